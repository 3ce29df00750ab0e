// What the bundled host makes of an animation that is handed over in any order, with differences and small frames.
// Bytes: one call after the other, a number and what it needs.
#include "fuzz_target.h"

#include "core/animation_recorder.h"
#include "core/failure.h"

using namespace stage;
using fuzz::mustHold;

namespace {

Palette takePalette(fuzz::Input& input) {
    Palette palette;
    const std::uint8_t step = input.take<std::uint8_t>();
    for (std::size_t i = 0; i < palette.size(); ++i)
        palette[i] = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i * step), 0};
    return palette;
}

AnimationInfo takeInfo(fuzz::Input& input) {
    return {input.number(9), input.number(9), input.number(1) == 0 ? 8u : 24u, takePalette(input), input.number(6)};
}

Frame takeFrame(fuzz::Input& input) {
    Frame frame;
    frame.width = 1 + input.number(8);
    frame.height = 1 + input.number(8);
    frame.format = static_cast<PixelFormat>(input.number(2));
    frame.delay = input.take<std::uint32_t>();
    if (frame.format == PixelFormat::Indexed) {
        frame.palette = takePalette(input);
        if (input.number(1) != 0)
            frame.transparentIndex = input.take<std::uint8_t>();
    }
    const std::uint8_t first = input.take<std::uint8_t>();
    for (std::size_t i = 0; i < frame.rowBytes() * frame.height; ++i)
        frame.pixels.push_back(i % 5 == 0 ? input.take<std::uint8_t>() : static_cast<std::uint8_t>(first + i % 3));
    return frame;
}

void checkFrame(const Frame& frame, const Animation& animation, bool deltas) {
    mustHold(frame.width == animation.width && frame.height == animation.height, "frames are whole pictures");
    mustHold(frame.pixels.size() == frame.rowBytes() * frame.height, "frames have all their pixels");
    mustHold(!deltas || !frame.transparentIndex, "a difference is filled");
    mustHold(!frame.transparentIndex || frame.format == PixelFormat::Indexed, "an entry is one of a palette");
}

void record(fuzz::Input& input) {
    AnimationRecorder recorder(input.number(1) == 0 ? DelayUnit::Hundredths : DelayUnit::Milliseconds);
    const bool deltas = input.number(1) != 0;
    if (deltas)
        recorder.announceDeltas();
    while (!input.isEmpty())
        switch (input.number(4)) {
        case 0:
            recorder.begin(takeInfo(input));
            break;
        case 1:
            recorder.setBackgroundIndex(input.take<std::uint16_t>());
            break;
        case 2:
            recorder.setBackgroundColour({input.take<std::uint8_t>(), 2, 3});
            break;
        default:
            recorder.addFrame(takeFrame(input));
        }
    const Animation animation = recorder.finish();
    mustHold(!animation.frames.empty(), "an animation has frames");
    for (const Frame& frame : animation.frames)
        checkFrame(frame, animation, deltas);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    try {
        record(input);
    } catch (const Failure& failure) {
        mustHold(failure.code() == ExitCode::PluginFailed, "a wrong order is the plugin's fault");
    }
    return 0;
}
