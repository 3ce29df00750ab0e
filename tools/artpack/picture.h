// SVG files and the pictures that they render to.
// Artwork is never scaled: a picture has the size that its SVG says. Icons come in several sizes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace artpack {

struct Size {
    int width;
    int height;
    bool operator==(const Size&) const = default;
};

// Cairo addresses its images with 16-bit signed coordinates.
inline constexpr int kLargestSide = 32767;

// Top-down rows without padding; a pixel is 0x00RRGGBB.
struct Picture {
    Size size;
    std::vector<std::uint32_t> pixels;
};

// The picture on white, one pixel to an SVG pixel. Throws Error when the file cannot be read, is no SVG, or gives no
// absolute width and height of 1 to kLargestSide pixels. A size in fractions of a pixel is refused.
Picture renderSvg(const std::filesystem::path& file);

// The drawing in a square of that many pixels a side, on nothing, as the bytes of a PNG file. Throws as renderSvg.
std::vector<std::uint8_t> renderPng(const std::filesystem::path& file, int side);

} // namespace artpack
