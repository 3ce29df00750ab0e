// Stopwatch: a large hand that turns once a minute and a small one that counts minutes; frame n shows n seconds.
// Everything is drawn in the pixels of the dial and reduced at the end; the numbers come from stopwatch_model.
#include "instruments/windows/instruments.h"

#include "instruments/dials/stopwatch_model.h"
#include "instruments/dials/windows/dial.h"
#include "instruments/windows/canvas_places.h"
#include "render/windows/artwork.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"

namespace veldran::stopwatch {
namespace {

constexpr int kDialResource = 7213;
constexpr int kMaskResource = 7214; // white around the watch

struct StopwatchParameters {
    Colour largeHand;
    Colour smallHand;
    Colour background;
    int size;
    int padding; // 0 without
    int frames;
    bool realTime;
};

StopwatchParameters readParameters(HWND dialog) {
    StopwatchParameters p{};
    p.largeHand = readColour(dialog, kStopwatchControl<Setting::MainStopwatchLargeHandColor>);
    p.smallHand = readColour(dialog, kStopwatchControl<Setting::MainStopwatchSmallHandColor>);
    p.background = background(dialog, 0);
    p.size = readParameter(dialog, kStopwatchControl<Setting::MainStopwatchSize>);
    if (isChecked(dialog, kStopwatchControl<Setting::MainStopwatchUsePadding>))
        p.padding = readParameter(dialog, kStopwatchControl<Setting::MainStopwatchPadding>);
    p.frames = readParameter(dialog, kStopwatchControl<Setting::MainStopwatchFrames>);
    p.realTime = isChecked(dialog, kStopwatchControl<Setting::MainStopwatchRealTime>);
    return p;
}

class StopwatchSequence : public FrameSequence {
public:
    StopwatchSequence(HWND dialog, HostParams* host, Artwork face, Artwork mask)
        : FrameSequence(dialog), face_(std::move(face)), mask_(std::move(mask)), parameters_(readParameters(dialog)),
          delayUnit_(delayUnitOf(host)),
          geometry_(artworkGeometry(face_.view().width, face_.view().height, parameters_.size, parameters_.padding)),
          dial_(face_.view(), geometry_, parameters_.background) {
        if (dial_)
            blendColourThroughMask(dial_.pixels(), mask_.view(), geometry_.pad, geometry_.pad, parameters_.background);
    }

    int frames() const override { return parameters_.frames; }
    std::uint32_t delay(int index) const override {
        return stopwatchDelay(parameters_.realTime, delayUnit_, FrameSequence::delay(index));
    }
    GlobalBlock render(int index) override {
        const StopwatchHands hands = stopwatchHands(geometry_.pad, index);
        return dial_.renderFrame([&](HDC dc) { drawHands(dc, hands); });
    }
    GlobalBlock renderMask() override { return cutOutAlpha(mask_.view(), geometry_); }
    GlobalBlock renderStill() override { return render(kStopwatchStillSeconds); }
    const void* artwork() const override { return &face_.view(); }

private:
    void drawHands(HDC dc, const StopwatchHands& hands) const {
        const auto draw = [&](CanvasPoint centre, CanvasPoint end, Colour colour) {
            drawLine(dc, pointOf(centre), pointOf(end), geometry_.unit, colour);
        };
        draw(hands.largeCentre, hands.largeTip, parameters_.largeHand);
        draw(hands.largeCentre, hands.largeTail, parameters_.largeHand);
        draw(hands.smallCentre, hands.smallTip, parameters_.smallHand);
    }

    Artwork face_;
    Artwork mask_;
    StopwatchParameters parameters_;
    std::uint32_t delayUnit_;
    ArtworkGeometry geometry_;
    Dial dial_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams* host) {
    Artwork face(kDialResource);
    Artwork mask(kMaskResource);
    return face && mask ? std::make_unique<StopwatchSequence>(dialog, host, std::move(face), std::move(mask)) : nullptr;
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kStopwatchControl<Setting::MainStopwatchBackColor>));
}

} // namespace veldran::stopwatch
