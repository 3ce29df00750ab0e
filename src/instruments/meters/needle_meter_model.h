// The needle of a VU meter. The scale is linear in voltage, as the levels of a sound are. Core: knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "sound/sound_analysis.h"

#include <array>

namespace veldran {

inline constexpr int kFullLevel = 255;            // the end of the scale, +3 dB
inline constexpr int kLampLevel = 228;            // +2 dB: 255 x 10^(-1 / 20), rounded up
inline constexpr int kNeedleStill[] = {165, 140}; // -0.8 and -2.2 dB, on the first display and the second

// Where a meter's artwork has its needle; pixels of the artwork.
struct NeedlePlace {
    CanvasPoint pivot;
    int root;       // where it comes out of the cover
    int tip;        // both are distances to the pivot
    double degrees; // from the top to either end of the scale
};

// The lit half on the left, the dark one on the right; each as root, root, tip, tip.
struct NeedleShape {
    std::array<CanvasPoint, 4> lit;
    std::array<CanvasPoint, 4> dark;
};

// Clockwise from the top, for a level of 0 to 255.
double needleDegrees(const NeedlePlace& place, int level);

// The needle, moved by `offset`. At `unit` pixels to one of the output its tip is no thinner than 1.4 pixels there.
NeedleShape needleShape(const NeedlePlace& place, int level, int unit, CanvasPoint offset);

} // namespace veldran
