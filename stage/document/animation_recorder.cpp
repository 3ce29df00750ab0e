// From what the plugin delivers to a document; see the header.
#include "document/animation_recorder.h"

#include "base/failure.h"
#include "base/text.h"
#include "document/picture.h"
#include "document/timing.h"

#include <algorithm>
#include <utility>

namespace stage {

std::string defaultFileName(std::string_view effectName) {
    std::string name;
    for (const char c : lowerCase(effectName)) {
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))
            name += c;
        else if (c == ' ' && !name.empty() && !name.ends_with('-'))
            name += '-';
    }
    while (name.ends_with('-'))
        name.pop_back();
    return name.empty() ? "animation" : name;
}

void AnimationRecorder::begin(const AnimationInfo& info) {
    requireOfPlugin(!info_, "The plugin began a second animation before the first was done.");
    requireOfPlugin(info.width >= 1 && info.height >= 1 && info.frameCount >= 1,
                    "The plugin announced an empty animation.");
    requireOfPlugin(info.width <= kLargestSide && info.height <= kLargestSide,
                    "The plugin announced an animation of more than 65535 pixels a side.");
    info_ = info;
    animation_.width = info.width;
    animation_.height = info.height;
}

void AnimationRecorder::setBackgroundIndex(std::uintptr_t index) {
    requireOfPlugin(index <= 255, "The plugin set a background outside the palette.");
    backgroundIndex_ = static_cast<std::uint8_t>(index);
    if (info_)
        animation_.background = info_->palette[index];
}

Rgb AnimationRecorder::backgroundFor(const Frame& frame) const {
    if (animation_.background)
        return *animation_.background;
    return frame.palette[backgroundIndex_.value_or(0)];
}

// A hole of a difference shows the frame before; in the first one, where nothing stands before, the background. The
// reserved entry has the background's colour in all frames, so that their palettes stay alike.
void AnimationRecorder::fillHoles(Frame& frame) const {
    const std::uint8_t hole = *frame.transparentIndex;
    frame.palette[hole] = backgroundFor(frame);
    frame.transparentIndex.reset();
    if (animation_.frames.empty())
        return;
    const Frame& before = animation_.frames.back();
    if (before.format == PixelFormat::Indexed && before.palette == frame.palette) {
        for (std::size_t i = 0; i < frame.pixels.size(); ++i)
            if (frame.pixels[i] == hole)
                frame.pixels[i] = before.pixels[i];
        return;
    }
    Picture shown = pictureOf(before);
    const Picture change = pictureOf(frame);
    for (std::size_t i = 0; i < frame.pixels.size(); ++i)
        if (frame.pixels[i] != hole)
            shown.pixels[i] = change.pixels[i];
    const std::uint32_t delay = frame.delay;
    frame = frameOf(shown);
    frame.delay = delay;
}

void AnimationRecorder::addFrame(Frame frame) {
    requireOfPlugin(info_.has_value(), "The plugin delivered a frame before it began an animation.");
    requireOfPlugin(animation_.frames.size() < info_->frameCount,
                    "The plugin delivered more frames than it announced.");
    requireOfPlugin(frame.width <= info_->width && frame.height <= info_->height,
                    "The plugin delivered a frame that is larger than the animation.");
    if (unit_ == DelayUnit::Hundredths)
        frame.delay = millisecondsFromHundredths(frame.delay);
    if (frame.width != info_->width || frame.height != info_->height) {
        const std::uint32_t delay = frame.delay;
        frame = frameOf(enlarged(pictureOf(frame), info_->width, info_->height));
        frame.delay = delay;
    }
    if (deltas_ && frame.transparentIndex)
        fillHoles(frame);
    animation_.frames.push_back(std::move(frame));
}

Animation AnimationRecorder::finish() {
    requireOfPlugin(info_ && animation_.frames.size() == info_->frameCount,
                    "The plugin delivered fewer frames than it announced.");
    info_.reset();
    return std::exchange(animation_, {});
}

} // namespace stage
