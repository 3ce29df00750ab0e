// Lissajous figure: numbers only.
#include "instruments/scopes/lissajous_model.h"

#include <algorithm>
#include <cstdlib>

namespace veldran {
namespace {

constexpr double kFullTurn = 360.0;

// 0 is what a list without a selection reads as. More than a full turn per frame leaves one frame.
int effectiveIncrement(int increment) {
    return increment == 0 ? 1 : std::clamp(increment, -360, 360);
}

} // namespace

int lissajousFrameCount(int increment) {
    return 360 / std::abs(effectiveIncrement(increment));
}

LissajousPhases lissajousPhases(const LissajousParameters& p, int frame) {
    const int turned = frame * effectiveIncrement(p.increment);
    return p.varyY ? LissajousPhases{0, turned} : LissajousPhases{turned, 0};
}

std::vector<CanvasPoint> lissajousCurve(const LissajousParameters& p, LissajousPhases phases, int offset) {
    const int radius = std::max(p.size, 1); // the steps divide by it
    const int centre = radius + offset;
    const double total = p.horizontal * kFullTurn;
    const double stepX = p.horizontal * kFullTurn / (2 * radius);
    const double stepY = p.vertical * kFullTurn / (2 * radius);
    std::vector<CanvasPoint> corners;
    corners.reserve(2 * static_cast<std::size_t>(radius) + 1);
    // Summed up and not multiplied: where the sums' rounding lets the last step fall short, there is one corner more.
    for (double x = 0, y = 0; x < total; x += stepX, y += stepY)
        corners.push_back({towardsZero(cosineOfDegrees(phases.x + x) * radius) + centre,
                           towardsZero(sineOfDegrees(phases.y + y) * radius) + centre});
    return corners;
}

} // namespace veldran
