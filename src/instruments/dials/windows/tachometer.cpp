// Tachometer: a needle over a round dial that follows a curve of speeds. Everything is drawn in the pixels of the dial
// and reduced at the end; the numbers come from tachometer_model.
#include "instruments/windows/instruments.h"

#include "instruments/dials/tachometer_model.h"
#include "instruments/dials/windows/dial.h"
#include "instruments/windows/canvas_places.h"
#include "render/windows/artwork.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"

namespace veldran::tachometer {
namespace {

constexpr int kDialResource = 7211;
constexpr int kMaskResource = 7212; // black around the dial
constexpr Colour kNeedleColour = makeColour(255, 0, 0);

struct TachometerParameters {
    Colour background;
    int size;
    int padding;
    std::vector<double> speeds; // one a frame
};

TachometerParameters readParameters(HWND dialog) {
    TachometerParameters p{};
    p.background = background(dialog, 0);
    p.size = readParameter(dialog, kTachometerControl<Setting::MainTachSize>);
    p.padding = readParameter(dialog, kTachometerControl<Setting::MainTachPadding>);
    p.speeds = tachometerSpeeds(readText(dialog, kTachometerControl<Setting::MainTachDataPointList>),
                                readParameter(dialog, kTachometerControl<Setting::MainTachFrames>));
    return p;
}

class TachometerSequence : public FrameSequence {
public:
    TachometerSequence(HWND dialog, Artwork face, const Artwork& mask)
        : FrameSequence(dialog), face_(std::move(face)), parameters_(readParameters(dialog)),
          geometry_(artworkGeometry(face_.view().width, face_.view().height, parameters_.size, parameters_.padding)),
          dial_(face_.view(), geometry_, parameters_.background) {
        if (dial_)
            blendInk(dial_.pixels(), mask.view(), geometry_.pad, geometry_.pad, parameters_.background);
    }

    int frames() const override { return static_cast<int>(parameters_.speeds.size()); }
    GlobalBlock render(int index) override { return renderAt(parameters_.speeds[static_cast<std::size_t>(index)]); }
    GlobalBlock renderMask() override {
        const ArtworkGeometry& g = geometry_;
        return ellipseMaskReduced(g.width, g.height, {g.pad, g.pad, g.width - g.pad, g.height - g.pad}, g.percent);
    }
    GlobalBlock renderStill() override { return renderAt(kTachometerStillSpeed); }
    const void* artwork() const override { return &face_.view(); }

private:
    GlobalBlock renderAt(double speed) const {
        const TachometerNeedle needle = tachometerNeedle(geometry_.pad, speed);
        return dial_.renderFrame([&](HDC dc) {
            drawLine(dc, pointOf(needle.pivot), pointOf(needle.tip), 2 * geometry_.unit, kNeedleColour);
        });
    }

    Artwork face_;
    TachometerParameters parameters_;
    ArtworkGeometry geometry_;
    Dial dial_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    Artwork face(kDialResource);
    const Artwork mask(kMaskResource);
    return face && mask ? std::make_unique<TachometerSequence>(dialog, std::move(face), mask) : nullptr;
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kTachometerControl<Setting::MainTachBlackColor>));
}

} // namespace veldran::tachometer
