// Sizes of canvases and ends of hands.
#include "instruments/artwork_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace veldran {

ArtworkGeometry artworkGeometry(int artworkWidth, int artworkHeight, int size, int padding) {
    ArtworkGeometry geometry{};
    // Sizes that no panel offers, from a host that writes its own ranges: neither a division by 0 nor a unit of 0,
    // which a size above the artwork's height would give.
    geometry.unit = std::max(artworkHeight / std::max(size, 1), 1);
    geometry.pad = geometry.unit * padding;
    geometry.width = artworkWidth + 2 * geometry.pad;
    geometry.height = artworkHeight + 2 * geometry.pad;
    geometry.percent = std::max(100 / geometry.unit, 1);
    return geometry;
}

int towardsZero(double value) {
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, kLowest, kHighest));
}

double sineOfDegrees(double degrees) {
    return std::sin(degrees * std::numbers::pi / 180);
}

double cosineOfDegrees(double degrees) {
    return std::cos(degrees * std::numbers::pi / 180);
}

CanvasPoint handEnd(CanvasPoint centre, int length, int degrees) {
    const double radians = degrees * kDialRadians;
    return {centre.x + towardsZero(length * std::sin(radians)), centre.y + towardsZero(-length * std::cos(radians))};
}

} // namespace veldran
