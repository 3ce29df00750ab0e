// The face of an oscilloscope: how large its screen, frame, grid and glow are. Core: draws nothing and knows no
// windows.
#pragma once

#include "instruments/artwork_geometry.h"

namespace veldran {

// Output pixels, but for the unit.
struct ScopeParameters {
    int width; // of what the beam may write on, as the height
    int height;
    int pad;  // around that, inside the bezel
    int glow; // 0: none
    int bezelSize;
    bool useBezel;
    int unit; // canvas pixels to an output pixel, 1 or 2
};

// Canvas pixels, but for the output.
struct ScopeGeometry {
    int width;
    int height;
    int bezelWidth; // 0 without a bezel
    int offset;     // from the border to what the beam may write on
    int glowRadius; // 0: no glow
    int outputWidth;
    int outputHeight;
    CanvasRect grid;      // of the scale, in a finished frame
    int outputBezel;      // bezelWidth in a finished frame
    int reductionPercent; // from the canvas to a finished frame
};

ScopeGeometry scopeGeometry(const ScopeParameters& p);

} // namespace veldran
