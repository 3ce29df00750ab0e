// Tachometer: numbers only.
#include "instruments/dials/tachometer_model.h"

#include "instruments/point_table.h"

#include <cmath>

namespace veldran {
namespace {

constexpr std::size_t kLongestPointText = 259;

// Pixels of the face.
constexpr CanvasPoint kPivot{272, 272};
constexpr CanvasPoint kRest{-198, 114}; // the tip at speed 0, from the pivot

// From rest to the stop: 67 hundredths of a turn.
constexpr double kFullScaleDegrees = 0.67 * 360;

double speedAt(const PointStretch& stretch, std::int64_t index) {
    const double slope = (stretch.to - stretch.from) / static_cast<double>(stretch.frames);
    return stretch.from + static_cast<double>(index) * slope;
}

} // namespace

std::vector<double> tachometerSpeeds(std::string_view points, int frames) {
    return pointTable(parseDataPoints(points.substr(0, kLongestPointText)), frames, speedAt);
}

TachometerNeedle tachometerNeedle(int pad, double speed) {
    const double radians = towardsZero(speed * kFullScaleDegrees) * kDialRadians;
    const double sine = std::sin(radians);
    const double cosine = std::cos(radians);
    const CanvasPoint pivot{kPivot.x + pad, kPivot.y + pad};
    return {pivot,
            {pivot.x + towardsZero(kRest.x * cosine - kRest.y * sine),
             pivot.y + towardsZero(kRest.x * sine + kRest.y * cosine)}};
}

} // namespace veldran
