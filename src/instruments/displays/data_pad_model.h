// Data pad: lamps, bars, strip, orb and marks of a frame, the shades of case and shadow. All in the pixels of the case.
// Core: draws nothing and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "instruments/displays/data_pad_parameters.h"
#include "instruments/displays/data_pad_text.h"
#include "render/colour.h"

#include <array>
#include <cstdint>
#include <vector>

namespace veldran {

// The control of a setting on the data pad's panel.
template <Setting kSetting>
inline constexpr int kDataPadControl = kControlOf<kDataPadParameters, kDataPadFirstControl, kSetting>;

struct DataPadColours {
    Colour counter;
    Colour counterOff;  // an unlit lamp
    Colour counterDark; // the ground of bar and running light
    Colour status;
    Colour statusOff;
    Colour statusDark; // the blinking mark
};

// `darkness` is the dark shades' share of their colours in per cent.
DataPadColours dataPadColours(Colour counter, Colour status, std::uint32_t darkness);

// Rows of type that fit whole into the screen of a case.
constexpr int pageRows(bool simpleCase) {
    return simpleCase ? 21 : 19;
}

// Lamps, bar, running light and status block belong to the full case.
constexpr bool showsStatus(bool status, bool simpleCase) {
    return status && !simpleCase;
}

struct FilledRect {
    CanvasRect area;
    Colour colour;
    bool operator==(const FilledRect&) const = default;
};

// How far the animation has run: filled up to at most four fifths, then fading to the dark shade, column by column.
std::vector<FilledRect> progressBar(const DataPadColours& colours, int frame, std::size_t lineCount);

// The frame's number in binary, the lowest bit first.
std::array<FilledRect, 9> frameLamps(const DataPadColours& colours, int frame);

// The ground, and the light on it.
std::array<FilledRect, 2> runningLight(const DataPadColours& colours, int frame);

// Three rows of four cells. A column stands for one of the line's first four characters and shows its three lowest
// bits from the top down.
std::array<FilledRect, 12> statusCells(const DataPadColours& colours, const TextLine& top);

// The dots of the line's set bits.
std::vector<CanvasRect> matrixDots(const TextLine& top);

// Ellipses to be filled from the outermost to the innermost.
std::array<FilledRect, 30> orbRings(int frame, std::size_t lineCount);

// Nothing outside of it is drawn of the rings.
inline constexpr CanvasRect kOrbClip{450, 18, 480, 48};

// The colour at `t`, 0 to 2. Channels that leave 0 to 255 come in again at the other end, which is what colours the
// range above 1.
Colour colourCycle(double t);

// A lozenge that jumps from one side of the step marker's way to the other.
std::array<CanvasPoint, 4> blinkMark(int frame);

CanvasRect stepMarker(int frame);

// The shades of the case by the index of its pixels; higher indices let the page show through.
std::array<Colour, 128> caseShades(Colour colour);

// What the channels under a shadow pixel of this value are multiplied by, in 255ths. `density` is in per cent.
constexpr int shadowFactor(int value, int density) {
    return 255 - (255 - value) * density / 100;
}

} // namespace veldran
