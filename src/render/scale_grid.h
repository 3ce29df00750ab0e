// The graticule of an oscilloscope. Core: knows no windows.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

namespace veldran {

// Draws divisions inside the rectangle from (left, top) to (right, bottom), right and bottom edge exclusive, on
// `picture` (24 bits): eight along the shorter side, as many as make them square (an even number) along the longer one;
// both axes through the middle with finer ticks, five a division, fewer where they would stand closer than 4 pixels.
// Lines are one pixel wide. Axes, ticks and the border have `colour`, the other lines a part of it. What reaches beyond
// the picture is dropped; an empty rectangle draws nothing.
void drawScaleGrid(const ImageView& picture, int left, int top, int right, int bottom, Colour colour);

} // namespace veldran
