// Radar: numbers only.
#include "instruments/scopes/radar_model.h"

#include "settings/integer_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace veldran {
namespace {

// 2 x 3.14159... x 226: pixels around the sweep's circle.
constexpr double kSweepCircumference = 1419.9998794225864;
constexpr int kMaximumIncrement = 60;
// Far outside of every canvas, yet sums with it cannot overflow.
constexpr double kFarAway = 1.0e6;

int truncate(double value) {
    return static_cast<int>(std::clamp(value, -kFarAway, kFarAway));
}

} // namespace

RadarGeometry radarGeometry(int graticuleWidth, int graticuleHeight, int size, int padding) {
    RadarGeometry geometry{artworkGeometry(graticuleWidth, graticuleHeight, size, padding), {}};
    geometry.centre = {geometry.width / 2, geometry.height / 2};
    return geometry;
}

SweepDirection sweepDirection(int increment) {
    return increment < 1 ? SweepDirection::CounterClockwise : SweepDirection::Clockwise;
}

int clampIncrement(int increment) {
    return increment == 0 ? 1 : std::clamp(increment, -kMaximumIncrement, kMaximumIncrement);
}

int sweepFrameCount(int increment) {
    const int step = std::abs(increment);
    return (360 + step - 1) / step;
}

std::vector<SweepLine> sweepLines(const RadarGeometry& geometry, int angle, int traceAngle, SweepDirection direction) {
    const bool clockwise = direction == SweepDirection::Clockwise;
    const int count = truncate(traceAngle / 360.0 * kSweepCircumference);
    const double start = clockwise ? angle - traceAngle : angle;
    std::vector<SweepLine> lines;
    lines.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int i = 0; i < count; ++i) {
        const double fraction = static_cast<double>(i) / count;
        const double radians = (start + fraction * traceAngle) * kDialRadians;
        const int rising = truncate(fraction * 255);
        SweepLine line{};
        line.end.x = geometry.centre.x + truncate(kRadarSweepRadius * std::sin(radians));
        line.end.y = geometry.centre.y - truncate(kRadarSweepRadius * std::cos(radians));
        line.grey = static_cast<std::uint8_t>(clockwise ? rising : 255 - rising);
        lines.push_back(line);
    }
    return lines;
}

RadarMarker parseRadarMarker(std::string_view line) {
    RadarMarker marker{};
    marker.name = line.substr(0, line.find(','));
    line.remove_prefix(marker.name.size());
    if (!takeComma(line))
        return marker;
    const std::optional<int> bearing = takeInteger(line);
    marker.bearing = bearing.value_or(0);
    if (bearing && takeComma(line))
        marker.distance = takeInteger(line).value_or(0);
    return marker;
}

CanvasPoint markerPosition(const RadarGeometry& geometry, const RadarMarker& marker) {
    const double radius = truncate(marker.distance / 100.0 * kRadarSweepRadius);
    const double radians = marker.bearing * kDialRadians;
    return {geometry.centre.x + truncate(radius * std::sin(radians)),
            geometry.centre.y + truncate(-radius * std::cos(radians))};
}

} // namespace veldran
