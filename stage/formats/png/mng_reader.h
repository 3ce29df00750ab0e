// Reads MNG files of low complexity: PNG pictures with their places, framing and delays.
#pragma once

#include "formats/animation_reader.h"

namespace stage {

bool isMng(std::span<const std::uint8_t> bytes);
// As readAnimation.
AnimationFile readMng(std::span<const std::uint8_t> bytes, const ReadOptions& options);

} // namespace stage
