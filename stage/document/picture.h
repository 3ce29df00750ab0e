// A picture in the one form in which writers compare and cut: four bytes a pixel, whatever the frame's format was.
#pragma once

#include "document/frame.h"

#include <cstdint>
#include <vector>

namespace stage {

// Red in the lowest byte, then green, blue, opacity. What is wholly transparent is 0, so that equal means "looks
// equal".
using Pixel = std::uint32_t;

constexpr Pixel kTransparentPixel = 0;

constexpr Pixel pixelOf(Rgb colour, std::uint32_t opacity = 255) {
    return opacity == 0
               ? kTransparentPixel
               : colour.red | std::uint32_t{colour.green} << 8 | std::uint32_t{colour.blue} << 16 | opacity << 24;
}
constexpr Rgb rgbOf(Pixel pixel) {
    return {static_cast<std::uint8_t>(pixel), static_cast<std::uint8_t>(pixel >> 8),
            static_cast<std::uint8_t>(pixel >> 16)};
}
constexpr std::uint8_t opacityOf(Pixel pixel) {
    return static_cast<std::uint8_t>(pixel >> 24);
}

struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<Pixel> pixels; // width * height, rows top-down

    bool operator==(const Picture&) const = default;
};

Picture pictureOf(const Frame& frame);
// Rgb when all pixels are opaque, else Rgba; without a delay.
Frame frameOf(const Picture& picture);
// On a larger canvas, at its top left corner, with nothing beside it.
Picture enlarged(const Picture& picture, std::uint32_t width, std::uint32_t height);

// A part of a canvas; empty when one of its sides is 0.
struct Area {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    bool operator==(const Area&) const = default;
};

// The smallest area outside of which two pictures of one size are equal.
Area changedArea(const Picture& before, const Picture& after);
Area unitedArea(const Area& a, const Area& b);
Picture cutOut(const Picture& picture, const Area& area);
void fill(Picture& picture, const Area& area, Pixel pixel);

} // namespace stage
