// Turns one frame into the bytes of a PNG file: palette, red-green-blue or with opacity.
// Never writes a file itself.
#pragma once

#include "core/frame.h"

namespace stage {

// Eight bits per channel, not interlaced. An Indexed frame's transparent index becomes a tRNS chunk.
std::vector<std::uint8_t> encodePng(const Frame& frame);

} // namespace stage
