// Blends that run over whole images. Core: knows no windows.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

namespace veldran {

// These two work on `picture` (24 bits) with the other image's top left pixel at (left, top). What reaches beyond the
// picture's borders is dropped.

// Lays `colour` over the picture with the low byte (blue) of each pixel of `mask` (24 bits) as its weight: 0 leaves the
// picture, 255 gives the colour.
void blendColourThroughMask(const ImageView& picture, const ConstImageView& mask, int left, int top, Colour colour);

// Draws a sheet of ink: dark pixels of `ink` (8 bits through its colour table, 24 or 32; the low byte counts) take
// `colour`, white ones leave the picture as it is.
void blendInk(const ImageView& picture, const ConstImageView& ink, int left, int top, Colour colour);

// Copies the three colour bytes of `colours` (8, 24 or 32 bits) and, as alpha, the low byte of the pixel of `alpha`
// (8, 24 or 32 bits) at the same place into `target` (32 bits, the size of `colours`). Where `alpha` has no pixel the
// result is transparent.
void mergeAlphaPixels(const ConstImageView& colours, const ConstImageView& alpha, const ImageView& target);

// Lays `picture` (32 bits) over a checkerboard of light greys and writes the result into `target` (24 bits, same size).
void blendOverCheckerboard(const ConstImageView& picture, const ImageView& target);

} // namespace veldran
