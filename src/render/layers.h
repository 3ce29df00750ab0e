// Layers of a picture: one image laid on another, whole, through a table of colours, or as a shadow. All work on what
// both images cover when the upper one's top left pixel stands at (left, top), which may lie outside. Core: knows no
// windows.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

#include <array>

namespace veldran {

// Copies `upper` to `picture`; both have 24 bits.
void layImage(const ImageView& picture, const ConstImageView& upper, int left, int top);

// Takes `picture` back to `under` where `window` hides it: the low byte of each pixel of `window` (8 bits through its
// colour table, 24 or 32) is the weight of the picture, 255 keeps it. `picture` and `under` have 24 bits and the same
// place; `window` lies at their top left.
void keepInWindow(const ImageView& picture, const ConstImageView& under, const ConstImageView& window);

// What an index looks like: a colour, or kNoColour where the picture shows through.
using IndexColours = std::array<Colour, 256>;

// Draws the indices of `upper` (8 bits; its own colour table does not count) on `picture` (24 bits).
void layIndices(const ImageView& picture, const ConstImageView& upper, int left, int top, const IndexColours& colours);

// What the channels under a pixel of a mask are multiplied by, in 255ths, for each value of that pixel.
using ShadowFactors = std::array<std::uint8_t, 256>;

// Darkens `picture` by the low byte of each pixel of `mask`; both have 24 bits. Products are truncated.
void layShadow(const ImageView& picture, const ConstImageView& mask, int left, int top, const ShadowFactors& factors);

// Turns every byte of an image of 24 bits into what it lacks to 255.
void invertImage(const ImageView& image);

} // namespace veldran
