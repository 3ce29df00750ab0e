// Alien overflight: a flight over fractal land, seen through a round or a rectangular port. The land is made once; each
// frame is a view from another place over it, drawn at twice the size and halved when edges are to be smooth; the
// numbers come from alien_terrain, the view from alien_view.
#include "instruments/windows/instruments.h"

#include "instruments/scenes/alien_overflight_parameters.h"
#include "instruments/scenes/alien_view.h"
#include "instruments/windows/painted_scene.h"
#include "render/bezel.h"
#include "render/scale_grid.h"
#include "render/windows/shape_mask.h"
#include "settings/windows/parameter_reader.h"

#include <algorithm>
#include <memory>

namespace veldran::alien_overflight {
namespace {

template <Setting kSetting>
constexpr int kAlienControl = kControlOf<kAlienOverflightParameters, kAlienOverflightFirstControl, kSetting>;

constexpr double kStillTurn = 0.3; // of the way, for the still picture

struct AlienParameters {
    Colour panel;
    Colour bezel;
    Colour scale;
    int size; // side of the frame, pixels
    int frames;
    int terrain;
    int seed;
    bool circular;
    bool useScale;
    int bezelSize; // pixels; 0 without a bezel
    TerrainCurves curves;
    int supersampling; // pixels of the view to one of the frame, each way
};

AlienParameters readParameters(HWND dialog) {
    AlienParameters p{};
    p.panel = background(dialog, 0);
    p.bezel = readColour(dialog, kAlienControl<Setting::MainPlasmaBezelColor>);
    p.scale = readColour(dialog, kAlienControl<Setting::MainPlasmaScaleColor>);
    p.size = std::max(readParameter(dialog, kAlienControl<Setting::MainPlasmaSize>), 1);
    p.frames = std::max(readParameter(dialog, kAlienControl<Setting::MainPlasmaFrames>), 1);
    p.terrain = readParameter(dialog, kAlienControl<Setting::MainPlasmaTerrain>);
    p.seed = readParameter(dialog, kAlienControl<Setting::MainPlasmaSeed>);
    p.circular = isChecked(dialog, kAlienControl<Setting::MainPlasmaCircular>);
    p.useScale = isChecked(dialog, kAlienControl<Setting::MainPlasmaUseScale>);
    p.bezelSize = isChecked(dialog, kAlienControl<Setting::MainPlasmaUseBezel>)
                      ? readParameter(dialog, kAlienControl<Setting::MainPlasmaBezelSize>)
                      : 0;
    p.curves.red = readCurve(dialog, kAlienControl<Setting::MainPlasmaRed>);
    p.curves.green = readCurve(dialog, kAlienControl<Setting::MainPlasmaGreen>);
    p.curves.blue = readCurve(dialog, kAlienControl<Setting::MainPlasmaBlue>);
    p.curves.intensity = readCurve(dialog, kAlienControl<Setting::MainPlasmaIntensity>);
    p.supersampling = readEdges(dialog) == Edges::Smooth ? 2 : 1;
    return p;
}

BezelShape portShape(const AlienParameters& p) {
    return {p.circular ? BezelStyle::Round : BezelStyle::RoundedRectangle, p.bezelSize, p.bezelSize};
}

// Without a frame, the port's edge is the land's: no rim may show.
Bezel makePort(const AlienParameters& p) {
    return Bezel(p.size, p.size, portShape(p), p.bezelSize > 0 ? p.bezel : p.panel, p.panel);
}

class AlienOverflightSequence : public FrameSequence {
public:
    explicit AlienOverflightSequence(HWND dialog)
        : FrameSequence(dialog), parameters_(readParameters(dialog)),
          terrain_(parameters_.seed, parameters_.terrain, parameters_.frames, parameters_.curves),
          view_(terrain_, skyOver(parameters_.curves), viewSide(), viewSide()), port_(makePort(parameters_)) {}

    int frames() const override { return parameters_.frames; }
    GlobalBlock render(int index) override { return renderAt(flightTurn(index, parameters_.frames)); }
    GlobalBlock renderStill() override { return renderAt(kStillTurn); }
    GlobalBlock renderMask() override { return bezelMask(parameters_.size, parameters_.size, portShape(parameters_)); }

private:
    int viewSide() const { return parameters_.size * parameters_.supersampling; }

    GlobalBlock renderAt(double turn) const {
        GlobalBlock view = createImage(viewSide(), viewSide(), 24);
        {
            const LockedImage image(view.get());
            if (!image)
                return {};
            view_.draw(image.view(), terrain_.stationAt(turn));
        }
        GlobalBlock picture = reducedOrUnchanged(std::move(view), 100 / parameters_.supersampling);
        const LockedImage image(picture.get());
        if (!image || image.view().width != parameters_.size)
            return {};
        const int inner = parameters_.bezelSize;
        if (parameters_.useScale)
            drawScaleGrid(image.view(), inner, inner, parameters_.size - inner, parameters_.size - inner,
                          parameters_.scale);
        port_.draw(image.view());
        return picture;
    }

    AlienParameters parameters_;
    Terrain terrain_;
    AlienView view_;
    Bezel port_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    return std::make_unique<AlienOverflightSequence>(dialog);
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kAlienControl<Setting::MainPlasmaPanelColor>));
}

} // namespace veldran::alien_overflight
