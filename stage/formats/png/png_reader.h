// Reads PNG and APNG files.
#pragma once

#include "formats/animation_reader.h"

namespace stage {

bool isPng(std::span<const std::uint8_t> bytes);
// As readAnimation. A file without animation chunks is one frame without delay.
AnimationFile readPng(std::span<const std::uint8_t> bytes, const ReadOptions& options);

} // namespace stage
