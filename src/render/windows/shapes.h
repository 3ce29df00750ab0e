// Filled shapes and lines on a canvas, each with its own pen and brush. Filled shapes have no outline. The font of
// pictures. All of them throw std::bad_alloc when the system has no more drawing objects.
#pragma once

#include "base/windows/gdi.h"
#include "render/colour.h"

#include <span>

#include <windows.h>

namespace veldran {

void fillRectangle(HDC dc, const RECT& rectangle, Colour colour);
// The ellipse in a box; right and bottom lie outside.
void fillEllipse(HDC dc, const RECT& box, Colour colour);
void fillDisc(HDC dc, POINT centre, int radius, Colour colour);
void fillPolygon(HDC dc, std::span<const POINT> corners, Colour colour);
// Fills what a rectangle with corners of an ellipse of the size given leaves of the rectangle.
void fillAroundRoundedRectangle(HDC dc, const RECT& rectangle, int cornerWidth, int cornerHeight, Colour colour);
// Lines have round ends and joins, are `width` pixels wide and lie half to each side of their corners.
void drawLine(HDC dc, POINT from, POINT to, int width, Colour colour);
void drawPolyline(HDC dc, std::span<const POINT> corners, int width, Colour colour);
// The outline alone; its right and bottom side lie on the last pixels inside.
void drawRectangle(HDC dc, const RECT& rectangle, int width, Colour colour);

// A font for texts in pictures, `height` pixels from the top of its cells to their bottom. `escapement` tilts its
// lines: tenths of a degree, counter-clockwise.
Font pictureFont(const char* name, bool bold, int height, int escapement);
Font boldArial(int height, int escapement);

} // namespace veldran
