// Where everything stands on a meter made of LEDs: its wells, the scale between or beside them, the labels. Core: knows
// no windows.
#pragma once

#include "instruments/meters/led_strip.h"

#include <string>
#include <vector>

namespace veldran {

// Canvas pixels.
struct TextSize {
    int width;
    int height;
};

// What a meter is made of, in canvas pixels.
struct LedMeterShape {
    LedDirection direction; // Right has one column to a bank
    int banks;              // 1, or 2 beside each other: left and right, or one over the other
    int columns;            // to a bank
    int leds;               // to a column
    int ledWidth;
    int ledDepth;
    int gapX; // between LEDs
    int gapY;
    int edgeX; // between LEDs and the border of their well
    int edgeY;
    int etch;    // the width of that border; 0 without
    int padding; // around everything
    int bankGap; // the least between two wells
    int unit;    // canvas pixels to an output pixel

    // The largest text of each kind; 0 x 0 where there is none.
    TextSize scaleText;
    TextSize bankText;
    TextSize columnText; // in two rows, in turn, where they do not fit beside each other
};

struct LedMeterLayout {
    int width;
    int height;
    LedStripGeometry strip;         // of every column
    int columnPitch;                // from one column to the next
    int firstColumn;                // from a well's inside to its first column
    std::vector<CanvasRect> wells;  // with their borders
    std::vector<CanvasRect> labels; // of the banks
    CanvasRect scale;               // as long as the wells' insides; empty without one
    int columnLabelTop;             // of the first of their rows
    int columnLabelRows;
};

LedMeterLayout ledMeterLayout(const LedMeterShape& shape);

// Where a column's strip begins.
CanvasPoint columnOrigin(const LedMeterLayout& layout, const LedMeterShape& shape, int bank, int column);

// How far from the strip's beginning a level (0 to 255) stands.
int levelAlong(const LedStripGeometry& strip, double level);

struct ScaleMark {
    int along;        // from the strip's beginning
    int tick;         // its length in output pixels; 0 has none
    std::string text; // decibels below full scale, or their unit; may be empty
};

// The marks of a scale whose texts take up `textAlong` canvas pixels: texts never touch, ticks stand at least 4 output
// pixels apart. Levels are linear in voltage. The unit stands where the level is 0.
std::vector<ScaleMark> scaleMarks(const LedStripGeometry& strip, int textAlong);

// The ticks' lengths, and the space between things that belong together, in output pixels.
inline constexpr int kLabelledTick = 3;
inline constexpr int kPlainTick = 2;
inline constexpr int kTextGap = 2;

inline constexpr char kScaleUnit[] = "dB";

} // namespace veldran
