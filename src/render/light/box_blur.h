// Three running averages each way. As many sequences as a register has bytes run side by side: columns of bytes for the
// vertical way; one channel of several rows, turned by 90 degrees, for the horizontal one. Core: knows no windows.
#pragma once

#include "render/image_view.h"
#include "render/light/light_loops.h"

#include <array>

namespace veldran {

// A running average: 2 x radius + 1 values count `inner` times, the one behind them on each side `edge` times. The
// weights' sum is 256 at most.
struct BoxWindow {
    int radius;
    int inner = 1; // 1 where there are no edges
    int edge = 0;  // `inner` at most

    int weights() const { return inner * (2 * radius + 1) + 2 * edge; }
};
using BoxWindows = std::array<BoxWindow, kBoxes>; // all of them have edges or none

// Blurs an image of 24 or 32 bits, whose rows stand in the order of memory, in place. `use`, of scale 128, says what
// becomes of the result. Throws std::bad_alloc, and then has changed nothing.
void boxBlur(const LightLoops& loops, const ImageView& image, const BoxWindows& across, const BoxWindows& down,
             const LightUse& use);

} // namespace veldran
