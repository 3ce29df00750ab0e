// A curve of data points as one value a frame. Core: knows no windows.
#pragma once

#include "settings/data_points.h"

#include <cstdint>
#include <span>
#include <vector>

namespace veldran {

// The stretch between two neighbouring points. Values are fractions of full scale, 1.0 for a point's value of 1000.
struct PointStretch {
    double from;
    double to;
    std::int64_t frames; // above 0
};

// The value of frame `index` of a stretch, 0 to frames - 1. Instruments differ in the order of the arithmetic, which
// shows where a value is truncated afterwards.
using StretchValue = double (*)(const PointStretch& stretch, std::int64_t index);

// `frames` values. A point stands in frame trunc(frames x position / 100), the last point behind the last frame. The
// stretches are written one after the other from frame 0 on: a curve that starts later is moved to the start. Stretches
// that do not go forward write nothing, frames that nothing reaches stay 0, values beyond the last frame are dropped.
std::vector<double> pointTable(std::span<const DataPoint> points, int frames, StretchValue value);

} // namespace veldran
