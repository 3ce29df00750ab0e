// Filled shapes and lines on a canvas, each with its own pen and brush. Shapes have no outline.
#pragma once

#include "render/colour.h"

#include <span>

#include <windows.h>

namespace veldran {

void fillRectangle(HDC dc, const RECT& rectangle, Colour colour);
// The ellipse in a box; right and bottom lie outside.
void fillEllipse(HDC dc, const RECT& box, Colour colour);
void fillDisc(HDC dc, POINT centre, int radius, Colour colour);
void fillPolygon(HDC dc, std::span<const POINT> corners, Colour colour);
// With round ends and joins, `width` pixels wide.
void drawLine(HDC dc, POINT from, POINT to, int width, Colour colour);

} // namespace veldran
