// What can be asked of a document; see the header.
#include "document/animation.h"

#include <algorithm>

namespace stage {
namespace {

bool isTransparent(const Frame& frame) {
    if (frame.format == PixelFormat::Indexed)
        return frame.transparentIndex && std::ranges::find(frame.pixels, *frame.transparentIndex) != frame.pixels.end();
    if (frame.format == PixelFormat::Rgb)
        return false;
    for (std::size_t i = 3; i < frame.pixels.size(); i += 4)
        if (frame.pixels[i] != 255)
            return true;
    return false;
}

} // namespace

std::uint64_t totalDelay(const Animation& animation) {
    std::uint64_t total = 0;
    for (const Frame& frame : animation.frames)
        total += frame.delay;
    return total;
}

bool hasTransparency(const Animation& animation) {
    return std::ranges::any_of(animation.frames, isTransparent);
}

} // namespace stage
