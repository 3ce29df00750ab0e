// Reads the packed bitmaps in which the plugin hands over its frames. The block is the plugin's and may say anything:
// no field of it is believed before it was held against the block's true size.
#pragma once

#include "document/frame.h"

#include <cstddef>
#include <span>

namespace stage {

enum class OpacityByte { Unused, Used };

// A 40-byte header, 256 colours of four bytes when it has 8 bits per pixel, then bottom-up rows padded to four bytes;
// 8, 24 or 32 bits per pixel, uncompressed. 32-bit pixels become Rgba when their top byte is used, else Rgb. The
// frame's delay and transparent index are left for the caller. Throws Failure(PluginFailed) when the block is anything
// else or too short.
Frame unpackBitmap(std::span<const std::byte> block, OpacityByte opacity);

} // namespace stage
