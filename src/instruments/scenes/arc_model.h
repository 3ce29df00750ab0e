// Electric arcs in air: jagged lines that wander from frame to frame, fork, and run in a circle over the animation.
// Core: draws nothing and knows no windows.
#pragma once

#include "base/loop_noise.h"
#include "render/light/light_strokes.h"

#include <vector>

namespace veldran {

// Where an arc stands, in pixels of the picture, y downwards.
struct ArcCourse {
    LightPoint from; // with the arc's width at its ends, 0 to 1
    LightPoint to;
    double stray; // how far it may leave its mean line, square to it
    double bow;   // how far its middle is carried upwards by its heat
};

// A line of light and its brightness, 1 = that of the profile.
struct Arc {
    std::vector<LightPoint> points;
    double intensity;
};

// The arc of `course` in a frame: midpoint displacement, halved a level, from end to end. The ends stay where they are;
// no corner leaves the bowed line by more than the stray. Large bends wander slowly, small ones are new in every frame.
// Lines of different numbers are independent.
std::vector<LightPoint> arcLine(const ArcCourse& course, const LoopNoise& noise, std::uint32_t line, int frame);

// Appends to `arcs` up to `count` thin forks that leave `trunk` on its way and die out in the air, none longer than
// `reach` pixels. They come and go. Their own lines have the numbers after `line`.
void addForks(std::vector<Arc>& arcs, const Arc& trunk, int count, double reach, const LoopNoise& noise,
              std::uint32_t line, int frame);

// Nearly `value` while it is small, and never beyond `limit` on its side of 0. `limit` is above 0.
double softened(double value, double limit);

} // namespace veldran
