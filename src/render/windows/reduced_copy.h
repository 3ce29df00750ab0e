// Frames of pictures that are drawn one after the other on the same canvas. Getting memory for a canvas and giving it
// back takes ten times as long as drawing on it and reducing it, so instruments keep theirs for a whole animation.
#pragma once

#include "base/windows/global_block.h"
#include "render/image_view.h"

namespace veldran {

// A picture of 24 bits, reduced to `percent` in both directions, as a frame; in full size when it cannot be reduced: a
// frame is never lost to a failed scale. Empty when there is no memory for that either.
GlobalBlock reducedCopy(const ConstImageView& picture, int percent);

} // namespace veldran
