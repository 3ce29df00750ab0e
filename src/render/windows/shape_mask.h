// Masks of shapes: images of 24 bits, white inside, black outside, grey along smoothed edges. The caller owns them; an
// empty block means that memory was exhausted.
#pragma once

#include "base/windows/global_block.h"
#include "render/bezel.h"

namespace veldran {

// An ellipse in `box`, drawn at `width` x `height` pixels and then reduced to `percent` of that.
GlobalBlock ellipseMaskReduced(int width, int height, const RECT& box, int percent);

// An ellipse for an image of `width` x `height`, drawn `scale` times as large and reduced again; `box` is in the large
// picture's pixels.
GlobalBlock ellipseMask(int width, int height, const RECT& box, int scale);

// A rounded rectangle that fills an image of `width` x `height`, with corners of an ellipse of the size given, drawn
// `scale` times as large and reduced again.
GlobalBlock roundedRectangleMask(int width, int height, int cornerWidth, int cornerHeight, int scale);

// The outline of a bezel on an image of `width` x `height`: what lies outside of it is black.
GlobalBlock bezelMask(int width, int height, const BezelShape& shape);

// The picture reduced to `percent` in both directions, or the picture itself when it cannot be: a frame is never lost
// to a failed scale. 100 is left as it is.
GlobalBlock reducedOrUnchanged(GlobalBlock picture, int percent);

} // namespace veldran
