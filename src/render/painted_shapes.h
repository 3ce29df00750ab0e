// Shapes with smooth edges and colours of their own from pixel to pixel: scenery that is painted once a build.
// Coordinates are pixels, pixel n covers n to n + 1. Core: knows no windows.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace veldran {

enum class Edges : std::uint8_t { Hard, Smooth };

struct ShapeBox {
    double left;
    double top;
    double right;
    double bottom;

    ShapeBox inset(double by) const { return {left + by, top + by, right - by, bottom - by}; }
};

// A colour and how much of what is below it hides, 0 to 1.
struct Paint {
    Colour colour;
    double opacity = 1;
};

// 0 up to `from`, 1 beyond `to`, smooth between.
template <class Number>
Number smoothStep(Number from, Number to, Number value) {
    const Number t = std::clamp((value - from) / (to - from), Number(0), Number(1));
    return t * t * (3 - 2 * t);
}

// How far a place lies outside of a box with rounded corners; negative inside. A radius below 0 counts as 0.
inline double distanceToBox(const ShapeBox& box, double radius, double x, double y) {
    const double corner = std::clamp(radius, 0.0, std::min(box.right - box.left, box.bottom - box.top) / 2);
    const double overX = std::max(box.left - x, x - box.right) + corner;
    const double overY = std::max(box.top - y, y - box.bottom) + corner;
    return std::hypot(std::max(overX, 0.0), std::max(overY, 0.0)) + std::min(std::max(overX, overY), 0.0) - corner;
}

// Paints the shape whose `distance(x, y)`, in pixels, is negative inside, as far as it lies in `reach`, on `picture`
// (24 bits), with what `paint(x, y)`, a Paint, gives for each pixel's middle. Hard edges take whole pixels.
template <class Distance, class PaintAt>
void paintShape(const ImageView& picture, const ShapeBox& reach, Edges edges, Distance distance, PaintAt paint) {
    const int left = std::max(static_cast<int>(std::floor(reach.left)), 0);
    const int right = std::min(static_cast<int>(std::ceil(reach.right)), picture.width);
    const int top = std::max(static_cast<int>(std::floor(reach.top)), 0);
    const int bottom = std::min(static_cast<int>(std::ceil(reach.bottom)), picture.height);
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x) {
            const double inside = 0.5 - distance(x + 0.5, y + 0.5);
            const double cover = edges == Edges::Smooth ? std::clamp(inside, 0.0, 1.0) : (inside >= 0.5 ? 1.0 : 0.0);
            if (cover <= 0)
                continue;
            const Paint over = paint(x + 0.5, y + 0.5);
            std::uint8_t* pixel = picture.pixel(x, y);
            const int weight = static_cast<int>(255 * cover * std::clamp(over.opacity, 0.0, 1.0) + 0.5);
            const Colour mixed = mixColours(makeColour(pixel[2], pixel[1], pixel[0]), over.colour, weight);
            pixel[0] = static_cast<std::uint8_t>(blueOf(mixed));
            pixel[1] = static_cast<std::uint8_t>(greenOf(mixed));
            pixel[2] = static_cast<std::uint8_t>(redOf(mixed));
        }
}

// A box with rounded corners.
template <class PaintAt>
void paintBox(const ImageView& picture, const ShapeBox& box, double radius, Edges edges, PaintAt paint) {
    paintShape(
        picture, box, edges, [&](double x, double y) { return distanceToBox(box, radius, x, y); }, paint);
}

} // namespace veldran
