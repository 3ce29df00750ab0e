// Lissajous figure: the beam of an oscilloscope, its glow, the bezel around the screen and the scale on its glass.
// Drawn at twice the output's size and halved, but for the scale: its lines are whole pixels of the finished frame. The
// curve comes from lissajous_model.
#include "instruments/lissajous.h"

#include "instruments/canvas_places.h"
#include "instruments/lissajous_model.h"
#include "instruments/lissajous_parameters.h"
#include "render/bezel.h"
#include "render/canvas.h"
#include "render/frame_image.h"
#include "render/glow.h"
#include "render/scale_grid.h"
#include "render/shape_mask.h"
#include "render/shapes.h"
#include "settings/parameter_reader.h"

#include <new>
#include <optional>

namespace veldran {
namespace {

constexpr int kReduction = 50; // per cent
constexpr int kGlowStrength = 100;

template <Setting kSetting>
constexpr int kLissajousControl = kControlOf<kLissajousParameters, kLissajousFirstControl, kSetting>;

struct LissajousLook {
    Colour trace;
    Colour screen;
    Colour scale;
    Colour bezel;
    Colour background; // outside of the bezel
    bool useScale;
};

// What is the same for every frame.
struct LissajousScene {
    LissajousParameters parameters;
    LissajousLook look;
    LissajousGeometry geometry;
    std::optional<Bezel> bezel;
};

LissajousParameters readParameters(HWND dialog) {
    LissajousParameters p{};
    p.horizontal = readParameter(dialog, kLissajousControl<Setting::MainLissajousHorz>);
    p.vertical = readParameter(dialog, kLissajousControl<Setting::MainLissajousVert>);
    p.increment = readChoiceNumber(dialog, kLissajousControl<Setting::MainLissajousIncrement>);
    p.varyY = isChecked(dialog, kLissajousControl<Setting::MainLissajousPhaseY>);
    p.size = readParameter(dialog, kLissajousControl<Setting::MainLissajousSize>);
    p.traceSize = readParameter(dialog, kLissajousControl<Setting::MainLissajousTraceSize>);
    p.glow = readParameter(dialog, kLissajousControl<Setting::MainLissajousGlow>);
    p.pad = readParameter(dialog, kLissajousControl<Setting::MainLissajousPadsize>);
    p.bezelSize = readParameter(dialog, kLissajousControl<Setting::MainLissajousBezelSize>);
    p.useBezel = isChecked(dialog, kLissajousControl<Setting::MainLissajousUseBezel>);
    return p;
}

LissajousLook readLook(HWND dialog) {
    LissajousLook look{};
    look.trace = readColour(dialog, kLissajousControl<Setting::MainLissajousGreenColor>);
    look.screen = readColour(dialog, kLissajousControl<Setting::MainLissajousBlackColor>);
    look.scale = readColour(dialog, kLissajousControl<Setting::MainLissajousScaleColor>);
    look.bezel = readColour(dialog, kLissajousControl<Setting::MainLissajousBezelColor>);
    look.background = lissajousBackground(dialog, 0);
    look.useScale = isChecked(dialog, kLissajousControl<Setting::MainLissajousUseScale>);
    return look;
}

constexpr BezelShape bezelOf(int width) {
    return {BezelStyle::RoundedRectangle, width, width};
}

void drawTrace(HDC dc, const LissajousScene& scene, LissajousPhases phases) {
    std::vector<POINT> corners;
    for (const CanvasPoint corner : lissajousCurve(scene.parameters, phases))
        corners.push_back(pointOf(corner));
    corners.push_back(corners.front());
    drawPolyline(dc, corners, scene.geometry.penWidth, scene.look.trace);
}

// A trace that does not glow is better than a frame that is missing.
void addGlow(const ImageView& picture, int radius) {
    try {
        glowImage(picture, kGlowStrength, radius);
    } catch (const std::bad_alloc&) { // the picture is as it was
    }
}

void drawScale(const GlobalBlock& frame, const LissajousScene& scene) {
    const LockedImage image(frame.get());
    if (!image)
        return;
    const CanvasRect grid = lissajousGrid(scene.parameters, image.view().width, image.view().height);
    drawScaleGrid(image.view(), grid.left, grid.top, grid.right, grid.bottom, scene.look.scale);
}

// One frame with these phases.
GlobalBlock renderFrame(const LissajousScene& scene, LissajousPhases phases) {
    const LissajousGeometry& geometry = scene.geometry;
    ScopedCanvas picture(geometry.side, geometry.side);
    if (!picture)
        return {};
    fillRectangle(picture.dc(), picture.bounds(), scene.look.screen);
    drawTrace(picture.dc(), scene, phases);
    addGlow(picture.pixels(), geometry.glowRadius);
    if (scene.bezel)
        scene.bezel->draw(picture.pixels());
    GlobalBlock frame = reducedOrUnchanged(picture.finish(), kReduction);
    if (scene.look.useScale)
        drawScale(frame, scene);
    return frame;
}

// The outline of the bezel, in the size of the frames; all of the frame without one.
GlobalBlock renderOutline(const LissajousScene& scene) {
    const int side = scene.geometry.outputSide;
    return scene.bezel ? bezelMask(side, side, bezelOf(scene.geometry.bezelWidth / 2)) : blankFrame(side, side);
}

class LissajousSequence : public FrameSequence {
public:
    explicit LissajousSequence(HWND dialog) : FrameSequence(dialog) {
        scene_.parameters = readParameters(dialog);
        scene_.look = readLook(dialog);
        scene_.geometry = lissajousGeometry(scene_.parameters);
        const int side = scene_.geometry.side;
        if (scene_.parameters.useBezel && side > 0)
            scene_.bezel.emplace(side, side, bezelOf(scene_.geometry.bezelWidth), scene_.look.bezel,
                                 scene_.look.background);
    }

    int frames() const override { return lissajousFrameCount(scene_.parameters.increment); }
    GlobalBlock render(int index) override { return renderFrame(scene_, lissajousPhases(scene_.parameters, index)); }
    GlobalBlock renderMask() override { return renderOutline(scene_); }
    GlobalBlock renderStill() override { return render(0); }

private:
    LissajousScene scene_;
};

} // namespace

std::unique_ptr<FrameSequence> openLissajous(HWND dialog, HostParams*) {
    return std::make_unique<LissajousSequence>(dialog);
}

Colour lissajousBackground(HWND dialog, int) {
    const bool bezel = isChecked(dialog, kLissajousControl<Setting::MainLissajousUseBezel>);
    return backgroundOr(dialog, readColour(dialog, bezel ? kLissajousControl<Setting::MainLissajousPanelColor>
                                                         : kLissajousControl<Setting::MainLissajousBlackColor>));
}

} // namespace veldran
