// Lissajous figure: curve, phases, sizes. Drawn at twice the output's size and halved at the end. Core: draws nothing
// and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"

#include <vector>

namespace veldran {

struct LissajousParameters {
    int horizontal; // oscillations in a closed curve, 1 and more
    int vertical;
    int increment; // degrees that the phase turns per frame; 0 counts as 1
    bool varyY;    // the vertical phase turns instead of the horizontal one
    int size;      // radius of the curve, canvas pixels
    int traceSize; // output pixels, as the following
    int glow;      // 0: none
    int pad;
    int bezelSize;
    bool useBezel;
};

// Canvas pixels, but for the output's side.
struct LissajousGeometry {
    int bezelWidth; // 0 without a bezel
    int offset;     // from the border to the curve's box
    int side;       // the canvas is square
    int penWidth;
    int glowRadius; // 0: no glow
    int outputSide; // of the finished frame and its mask
};

LissajousGeometry lissajousGeometry(const LissajousParameters& p);

// Where the scale grid lies in a finished frame of that size.
CanvasRect lissajousGrid(const LissajousParameters& p, int frameWidth, int frameHeight);

// Frames of a full turn, truncated: the phase may end short of its start.
int lissajousFrameCount(int increment);

// Degrees.
struct LissajousPhases {
    int x;
    int y;
};

LissajousPhases lissajousPhases(const LissajousParameters& p, int frame);

// The corners of the curve in drawing order; the line from the last to the first closes it. About 2 x size corners,
// however high the frequencies are.
std::vector<CanvasPoint> lissajousCurve(const LissajousParameters& p, LissajousPhases phases);

} // namespace veldran
