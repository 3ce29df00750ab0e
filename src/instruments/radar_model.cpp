// Radar: numbers only.
#include "instruments/radar_model.h"

#include "settings/integer_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace veldran {
namespace {

// 3.14159 / 180. The short pi is part of the radar's look: where lines end depends on it.
constexpr double kRadians = 0.017453277777777776;
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
    RadarGeometry geometry{};
    // Sizes that the panel does not offer, from a host that writes its own ranges: neither a division by 0 nor a unit
    // of 0, which a size above the artwork's height would give.
    geometry.unit = std::max(graticuleHeight / std::max(size, 1), 1);
    geometry.pad = geometry.unit * padding;
    geometry.width = graticuleWidth + 2 * geometry.pad;
    geometry.height = graticuleHeight + 2 * geometry.pad;
    geometry.centre = {geometry.width / 2, geometry.height / 2};
    geometry.percent = std::max(100 / geometry.unit, 1);
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
        const double radians = (start + fraction * traceAngle) * kRadians;
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

RadarPoint markerPosition(const RadarGeometry& geometry, const RadarMarker& marker) {
    const double radius = truncate(marker.distance / 100.0 * kRadarSweepRadius);
    const double radians = marker.bearing * kRadians;
    return {geometry.centre.x + truncate(radius * std::sin(radians)),
            geometry.centre.y + truncate(-radius * std::cos(radians))};
}

Colour pingColour(Colour marker, Colour scale, int glow) {
    const auto mix = [glow](int lit, int plain) { return (lit * glow + plain * (255 - glow)) / 255; };
    return makeColour(mix(redOf(scale), redOf(marker)), mix(greenOf(scale), greenOf(marker)),
                      mix(blueOf(scale), blueOf(marker)));
}

} // namespace veldran
