// Directions and corners of a needle.
#include "instruments/meters/needle_meter_model.h"

#include <algorithm>
#include <cmath>

namespace veldran {
namespace {

constexpr double kThinnestTip = 2.2; // half of its width
constexpr double kTaper = 1.5;       // what half the width grows by from tip to root

} // namespace

double needleDegrees(const NeedlePlace& place, int level) {
    return place.degrees * (2.0 * level / kFullLevel - 1);
}

NeedleShape needleShape(const NeedlePlace& place, int level, int unit, CanvasPoint offset) {
    const double degrees = needleDegrees(place, level);
    const double along[] = {sineOfDegrees(degrees), -cosineOfDegrees(degrees)};
    const auto corner = [&](double distance, double aside) {
        return CanvasPoint{
            place.pivot.x + offset.x + static_cast<int>(std::lround(distance * along[0] - aside * along[1])),
            place.pivot.y + offset.y + static_cast<int>(std::lround(distance * along[1] + aside * along[0]))};
    };
    const double tip = std::max(kThinnestTip, 0.7 * unit);
    const double root = tip + kTaper;
    const auto half = [&](double side) {
        return std::array{corner(place.root, 0), corner(place.root, side * root), corner(place.tip, side * tip),
                          corner(place.tip, 0)};
    };
    return {half(-1), half(1)};
}

} // namespace veldran
