// Countdown: clock, delays, which glyph stands where, the frame around. Drawn in the pixels of the large digits and
// reduced at the end. Core: draws nothing and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "render/colour.h"

#include <array>
#include <cstdint>
#include <vector>

namespace veldran {

struct CountdownParameters {
    int hours; // the start
    int minutes;
    int seconds;
    bool tenths; // shown, and counted in
    int size;    // height of the large digits, output pixels
    bool usePadding;
    int padding;
    bool useBezel;
    int bezelSize;
    bool antialias;
};

// Without antialiasing margin and bezel are not enlarged with the digits, and so shrink with them at the end.
struct CountdownGeometry {
    int margin; // canvas pixels
    int width;
    int height;
    int bezelLine; // width of the bezel's lines
    int percent;   // the reduction of the finished frame
};

CountdownGeometry countdownGeometry(const CountdownParameters& p);

struct CountdownTime {
    int hours;
    int minutes;
    int seconds;
    int tenths;
    bool operator==(const CountdownTime&) const = default;
};

// What the still shows in its last place.
inline constexpr int kCountdownStillTenths = 9;

// How often the clock is put back. The frames are one more: the last shows 0.
int countdownSteps(const CountdownParameters& p);

// `frame` is 0 to countdownSteps.
CountdownTime countdownTime(const CountdownParameters& p, int frame);

// A second, or a tenth of it, in the unit of a host with these flags.
std::uint32_t countdownDelay(bool tenths, std::uint32_t hostFlags);

enum class GlyphStrip : std::uint8_t { Large, Small };

// `source` may reach beyond the strip, whose last cell is short: what is missing there is paper. `target` may reach
// beyond the canvas.
struct CountdownGlyph {
    GlyphStrip strip;
    CanvasRect source; // pixels of the strip
    CanvasPoint target;
};

// The glyphs from left to right.
std::vector<CountdownGlyph> countdownGlyphs(const CountdownGeometry& geometry, const CountdownTime& time, bool tenths);

struct OutlinedRect {
    CanvasRect rect; // the line lies inside, as GDI draws a rectangle with a pen of one pixel
    Colour colour;
};

// An open rectangle in two colours: right and bottom are corners that the lines meet in.
struct BevelRing {
    CanvasRect corners;
    Colour topLeft; // drawn first, from the bottom left over the top left to the top right
    Colour bottomRight;
};

// In drawing order.
struct CountdownBezel {
    std::array<OutlinedRect, 2> outer;
    std::vector<BevelRing> rings;
    OutlinedRect inner;
};

CountdownBezel countdownBezel(const CountdownGeometry& geometry, int bezelSize, Colour colour);

} // namespace veldran
