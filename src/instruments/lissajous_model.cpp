// Lissajous figure: numbers only.
#include "instruments/lissajous_model.h"

#include <algorithm>
#include <cstdlib>

namespace veldran {
namespace {

constexpr double kFullTurn = 360.0;
constexpr int kGlowMargin = 2; // so that even a glow of 1 is seen once the frame is halved

// 0 is what a list without a selection reads as. More than a full turn per frame leaves one frame.
int effectiveIncrement(int increment) {
    return increment == 0 ? 1 : std::clamp(increment, -360, 360);
}

} // namespace

LissajousGeometry lissajousGeometry(const LissajousParameters& p) {
    LissajousGeometry geometry{};
    geometry.bezelWidth = p.useBezel ? 2 * p.bezelSize : 0;
    geometry.offset = geometry.bezelWidth + 2 * p.pad;
    geometry.side = 2 * (p.size + geometry.offset);
    geometry.penWidth = 2 * p.traceSize;
    geometry.glowRadius = p.glow > 0 ? p.glow + kGlowMargin : 0;
    geometry.outputSide = geometry.side / 2;
    return geometry;
}

CanvasRect lissajousGrid(const LissajousParameters& p, int frameWidth, int frameHeight) {
    const int inset = p.pad / 2 + (p.useBezel ? p.bezelSize : 0);
    return {inset, inset, frameWidth - inset, frameHeight - inset};
}

int lissajousFrameCount(int increment) {
    return 360 / std::abs(effectiveIncrement(increment));
}

LissajousPhases lissajousPhases(const LissajousParameters& p, int frame) {
    const int turned = frame * effectiveIncrement(p.increment);
    return p.varyY ? LissajousPhases{0, turned} : LissajousPhases{turned, 0};
}

std::vector<CanvasPoint> lissajousCurve(const LissajousParameters& p, LissajousPhases phases) {
    const int radius = std::max(p.size, 1); // the steps divide by it
    const int centre = radius + lissajousGeometry(p).offset;
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
