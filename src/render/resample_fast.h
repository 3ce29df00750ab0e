// The quick ways of averaging areas, for images of 24 and 32 bits. Each gives the bytes that averaging in 64 bits
// gives, or declines. Core: knows no windows.
#pragma once

#include "render/image_view.h"

namespace veldran {

// Sides that are whole multiples of the target's, with at most 128 source pixels under a target pixel: sums in 16 bits.
// False, and nothing done, for any other pair of images. Throws std::bad_alloc.
bool resampleWholeRatio(const ConstImageView& source, const ImageView& target);

// Any ratio, larger or smaller, whose sums fit 32 bits: all reductions of pictures up to 2896 pixels square, and most
// others. False, and nothing done, where they do not fit or a source row has less than 16 bytes. Throws
// std::bad_alloc.
bool resampleFractionalRatio(const ConstImageView& source, const ImageView& target);

} // namespace veldran
