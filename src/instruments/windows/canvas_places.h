// The models' points and rectangles as the drawing functions want them.
#pragma once

#include "instruments/artwork_geometry.h"

#include <windows.h>

namespace veldran {

constexpr POINT pointOf(CanvasPoint point) {
    return {point.x, point.y};
}

constexpr RECT rectOf(const CanvasRect& rectangle) {
    return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

} // namespace veldran
