// Runs of pixels that are compared between frames at once, so that what stands still costs no more than reading it.
// Core: knows no windows.
#pragma once

#include "render/image_view.h"

namespace veldran {

inline constexpr int kRunPixels = 32; // 96 or 128 bytes, a few vectors: rarely more than what stands still together

inline bool sameShape(const ConstImageView& a, const ConstImageView& b) {
    return a.width == b.width && a.height == b.height && a.bits == b.bits;
}

// Whether two rows of pixels hold the same bytes.
inline bool sameRun(const std::uint8_t* a, const std::uint8_t* b, int pixels, int bytesPerPixel) {
    return std::memcmp(a, b, static_cast<std::size_t>(pixels) * static_cast<std::size_t>(bytesPerPixel)) == 0;
}

} // namespace veldran
