// Light that spreads: blur and glow. Core: knows no windows.
#pragma once

#include "render/image_view.h"
#include "render/light/light_loops.h"

namespace veldran {

inline constexpr int kLargestBlurRadius = 381; // pixels; what is above counts as this

// Both work in place on images of 24 or 32 bits, every channel for itself. `radius` is how far light reaches, in
// pixels; 0 and less leave the image alone. Weights are close to a Gaussian whose standard deviation is a third of the
// radius, a little more where that is small. Borders continue their last pixel, so a flat image stays as it is, byte
// for byte; mirrored images give mirrored results. From seven pixels on (eleven where a side is odd) light is worked
// out at a reduced size and differs by a few levels from what full size gives; the time falls up to eighteen pixels and
// does not depend on the radius beyond. Both throw std::bad_alloc, and then have changed nothing. All loops give the
// same.

void blurImage(const ImageView& image, int radius, const LightLoops& loops = bestLight());

// Lights up what is brighter than its surroundings and lets it shine on them. A pixel darker than the blurred image is
// lifted by one and a half times what it lacks, one that is brighter by three eighths of what it exceeds it; `strength`
// in per cent (0 to 2000, what is beyond counts as the limit) multiplies both. No channel ever gets darker.
void glowImage(const ImageView& image, int strength, int radius, const LightLoops& loops = bestLight());

} // namespace veldran
