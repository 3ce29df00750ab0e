// Countdown: numbers only.
#include "instruments/displays/countdown_model.h"

#include "instruments/real_time.h"

#include <algorithm>
#include <limits>

namespace veldran {
namespace {

// Pixels of the strips: ten digits and a colon, side by side.
constexpr int kColonCell = 10;
constexpr int kLargeWidth = 172;
constexpr int kLargeHeight = 267;
constexpr int kSmallWidth = 86;
constexpr int kSmallHeight = 133;

// Places measured from the margin. A digit takes 193 pixels, a colon 93: its cell overlaps the digit after it.
constexpr int kHoursX = 0;
constexpr int kMinutesX = 479;
constexpr int kSecondsX = 958;
constexpr int kDigitPitch = 193;
constexpr int kColonOffset = 386;
constexpr int kSmallColonX = 1344;
constexpr int kTenthsX = 1390;
constexpr int kWidth = 1323;
constexpr int kTenthsWidth = 142; // the tenths' cell ends 11 pixels further, in paper

// The bezel: a hairline, a bright lip, a bevel that darkens by 30 % from outside to inside, a dark gap.
constexpr double kHairlineShade = 0.66;
constexpr double kLightShade = 1.6;
constexpr double kGapShade = 0.1;
constexpr double kBevelFade = 0.3;
constexpr int kPlainLines = 3; // hairline, lip and gap

CountdownGlyph glyphAt(GlyphStrip strip, int cell, CanvasPoint target) {
    const bool large = strip == GlyphStrip::Large;
    const int width = large ? kLargeWidth : kSmallWidth;
    return {strip, rectAt({cell * width, 0}, width, large ? kLargeHeight : kSmallHeight), target};
}

} // namespace

CountdownGeometry countdownGeometry(const CountdownParameters& p) {
    const ArtworkGeometry digits = artworkGeometry(0, kLargeHeight, p.size, 0);
    CountdownGeometry geometry{};
    geometry.bezelLine = p.antialias ? digits.unit : 1;
    geometry.margin = geometry.bezelLine * ((p.useBezel ? p.bezelSize : 0) + (p.usePadding ? p.padding : 0));
    geometry.width = 2 * geometry.margin + kWidth + (p.tenths ? kTenthsWidth : 0);
    geometry.height = 2 * geometry.margin + kLargeHeight;
    geometry.percent = digits.percent;
    return geometry;
}

int countdownSteps(const CountdownParameters& p) {
    const std::int64_t seconds = (std::int64_t{p.hours} * 60 + p.minutes) * 60 + p.seconds;
    constexpr std::int64_t kMostSteps = std::numeric_limits<int>::max() - 1;
    return static_cast<int>(std::clamp<std::int64_t>(p.tenths ? seconds * 10 : seconds, 0, kMostSteps));
}

CountdownTime countdownTime(const CountdownParameters& p, int frame) {
    const int left = countdownSteps(p) - frame;
    const int seconds = p.tenths ? left / 10 : left;
    return {seconds / 3600, seconds / 60 % 60, seconds % 60, p.tenths ? left % 10 : 0};
}

std::uint32_t countdownDelay(bool tenths, std::uint32_t hostFlags) {
    return secondInHostUnit(hostFlags) / (tenths ? 10 : 1);
}

std::vector<CountdownGlyph> countdownGlyphs(const CountdownGeometry& geometry, const CountdownTime& time, bool tenths) {
    std::vector<CountdownGlyph> glyphs;
    const auto add = [&](GlyphStrip strip, int cell, int x) {
        glyphs.push_back(glyphAt(strip, cell, {geometry.margin + x, geometry.margin}));
    };
    const auto addPair = [&](int number, int x) {
        add(GlyphStrip::Large, number / 10, x);
        add(GlyphStrip::Large, number % 10, x + kDigitPitch);
    };
    addPair(time.hours, kHoursX);
    add(GlyphStrip::Large, kColonCell, kHoursX + kColonOffset);
    addPair(time.minutes, kMinutesX);
    add(GlyphStrip::Large, kColonCell, kMinutesX + kColonOffset);
    addPair(time.seconds, kSecondsX);
    if (tenths) {
        add(GlyphStrip::Small, kColonCell, kSmallColonX);
        add(GlyphStrip::Small, time.tenths, kTenthsX);
    }
    return glyphs;
}

CountdownBezel countdownBezel(const CountdownGeometry& geometry, int bezelSize, Colour colour) {
    const int w = geometry.bezelLine;
    const int right = geometry.width;
    const int bottom = geometry.height;
    CountdownBezel bezel{};
    bezel.outer = {{{{0, 0, right - w, bottom - w}, scaleColour(colour, kHairlineShade)},
                    {{w, w, right - 2 * w, bottom - 2 * w}, scaleColour(colour, kLightShade)}}};
    // A bezel of three lines has no bevel; its fade is used by nobody, but must not divide by 0.
    const double kept = 1 - kBevelFade / std::max<double>(bezelSize - kPlainLines, 0.1);
    BevelRing ring{{2 * w, 2 * w, right - 3 * w, bottom - 3 * w}, colour, scaleColour(colour, kLightShade)};
    for (int i = 0; i < bezelSize - kPlainLines; ++i) {
        bezel.rings.push_back(ring);
        ring.bottomRight = scaleColour(ring.bottomRight, kept);
        ring.topLeft = scaleColour(ring.topLeft, kept);
        ring.corners = insetBy(ring.corners, w);
    }
    bezel.inner = {ring.corners, scaleColour(colour, kGapShade)};
    return bezel;
}

} // namespace veldran
