// Shifting five bits a point.
#include "settings/curve_points.h"

#include <algorithm>

namespace veldran {
namespace {

constexpr int kBitsPerPoint = 5;

} // namespace

CurvePoints unpackCurve(std::uint32_t value) {
    CurvePoints points{};
    for (int& point : points) {
        point = static_cast<int>(value & kHighestCurvePoint);
        value >>= kBitsPerPoint;
    }
    return points;
}

std::uint32_t packCurve(const CurvePoints& points) {
    std::uint32_t value = 0;
    for (auto point = points.rbegin(); point != points.rend(); ++point)
        value = value << kBitsPerPoint | static_cast<std::uint32_t>(std::clamp(*point, 0, kHighestCurvePoint));
    return value;
}

} // namespace veldran
