// Artwork from the plugin's resources.
#pragma once

#include "base/windows/global_block.h"

namespace veldran {

// The unpacked image of the "CPX" resource with this identity, in a movable block that the caller owns; empty when the
// resource is missing or no record, memory is exhausted or the stream is corrupt. What the image's own header says is
// checked by whoever draws it.
GlobalBlock loadPackedImage(int identity);

// The same for a record in memory.
GlobalBlock unpackImage(std::span<const std::uint8_t> record);

} // namespace veldran
