// Reads GIF87a and GIF89a files.
#pragma once

#include "formats/animation_reader.h"

namespace stage {

bool isGif(std::span<const std::uint8_t> bytes);
// As readAnimation.
AnimationFile readGif(std::span<const std::uint8_t> bytes, const ReadOptions& options);

} // namespace stage
