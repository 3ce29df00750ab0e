// Blends that run over whole images. Core: knows no windows.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

namespace veldran {

// Lays `colour` over `picture` (24 bits) with the low byte (blue) of each pixel of `mask` (24 bits) as its weight: 0
// leaves the picture, 255 gives the colour. Only where both images have pixels.
void blendColourThroughMask(const ImageView& picture, const ConstImageView& mask, Colour colour);

// Draws a sheet of ink on `picture` (24 bits), its top left pixel at (left, top): dark pixels of `ink` (8 bits through
// its colour table, 24 or 32; the low byte counts) take `colour`, white ones leave the picture as it is. Ink beyond the
// picture's borders is dropped.
void blendInk(const ImageView& picture, const ConstImageView& ink, int left, int top, Colour colour);

// Copies the three colour bytes of `colours` (8, 24 or 32 bits) and, as alpha, the low byte of the pixel of `alpha`
// (8, 24 or 32 bits) at the same place into `target` (32 bits, the size of `colours`). Where `alpha` has no pixel the
// result is transparent.
void mergeAlphaPixels(const ConstImageView& colours, const ConstImageView& alpha, const ImageView& target);

// Lays `picture` (32 bits) over a checkerboard of light greys and writes the result into `target` (24 bits, same size).
void blendOverCheckerboard(const ConstImageView& picture, const ImageView& target);

} // namespace veldran
