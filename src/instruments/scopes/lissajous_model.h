// Lissajous figure: curve and phases. Core: draws nothing and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"

#include <vector>

namespace veldran {

struct LissajousParameters {
    int horizontal; // oscillations in a closed curve, 1 and more
    int vertical;
    int increment; // degrees that the phase turns per frame; 0 counts as 1
    bool varyY;    // the vertical phase turns instead of the horizontal one
    int size;      // radius of the curve, canvas pixels, and so the width of its box in output pixels
    int traceSize; // output pixels
};

// Canvas pixels to an output pixel.
inline constexpr int kLissajousUnit = 2;

// Frames of a full turn, truncated: the phase may end short of its start.
int lissajousFrameCount(int increment);

// Degrees.
struct LissajousPhases {
    int x;
    int y;
};

LissajousPhases lissajousPhases(const LissajousParameters& p, int frame);

// The corners of the curve in drawing order; the line from the last to the first closes it. About 2 x size corners,
// however high the frequencies are. The curve's box begins at (offset, offset).
std::vector<CanvasPoint> lissajousCurve(const LissajousParameters& p, LissajousPhases phases, int offset);

} // namespace veldran
