// From data points to values.
#include "instruments/point_table.h"

#include "instruments/artwork_geometry.h"

#include <algorithm>

namespace veldran {
namespace {

constexpr double kFullScale = kHighestValue;

// The fraction comes first: 100 frames x 0.29 is 28.99..., and truncated 28.
std::int64_t frameOf(const DataPoint& point, int frames) {
    return towardsZero(frames * (point.position / 100.0));
}

} // namespace

std::vector<double> pointTable(std::span<const DataPoint> points, int frames, StretchValue value) {
    std::vector<double> table;
    const auto size = static_cast<std::size_t>(std::max(frames, 0));
    table.reserve(size);
    for (std::size_t k = 0; k + 1 < points.size(); ++k) {
        const bool last = k + 2 == points.size();
        const std::int64_t end = last ? frames : frameOf(points[k + 1], frames);
        const PointStretch stretch{points[k].value / kFullScale, points[k + 1].value / kFullScale,
                                   end - frameOf(points[k], frames)};
        for (std::int64_t j = 0; j < stretch.frames && table.size() < size; ++j)
            table.push_back(value(stretch, j));
    }
    table.resize(size);
    return table;
}

} // namespace veldran
