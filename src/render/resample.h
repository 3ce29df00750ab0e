// Scaling of images by area averaging. Core: knows no windows.
#pragma once

#include "render/image_view.h"

namespace veldran {

// The length of a side after scaling by whole per cent: rounded, halves up. `length` is at least 0; so is the result.
int scaledLength(int length, int percent);

// Fills `target` with `source` scaled to its size: every target pixel is the average of the source area that it covers,
// channel by channel on the values as stored, computed in integers and rounded to nearest, halves up. `source` has 8
// (looked up in its colour table), 24 or 32 bits; `target` has 32 for a source of 32 and 24 otherwise. Both are at
// least 1 x 1. Throws std::bad_alloc.
void resampleArea(const ConstImageView& source, const ImageView& target);

// The same bytes by the longest way, in 64 bits: what resampleArea falls back to where its quicker ways do not reach,
// and what those are measured against.
void resampleAreaWide(const ConstImageView& source, const ImageView& target);

} // namespace veldran
