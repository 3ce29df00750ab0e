// Data pad: numbers only.
#include "instruments/displays/data_pad_model.h"

#include <algorithm>
#include <cmath>

namespace veldran {
namespace {

constexpr double kLampOff = 0.45;

// Pixels of the case.
constexpr CanvasPoint kBarCorner{98, 694};
constexpr int kBarLength = 222;
constexpr int kBarThickness = 16;
constexpr double kBarFilled = 177.6; // 80 % of the track: even the last frame leaves some of it

constexpr CanvasPoint kLampCorner{98, 670};
constexpr CanvasRect kRunningStrip{98, 718, 350, 734};
constexpr int kLampPitch = 20;
constexpr int kLampWidth = 12;
constexpr int kLampHeight = 16;
constexpr int kRunningPlaces = 12;

constexpr CanvasPoint kStatusCorner{24, 670};
constexpr int kStatusColumns = 4;
constexpr int kStatusCell = 16;
constexpr int kStatusRowPitch = 24;

constexpr CanvasPoint kMatrixCorner{506, 18};
constexpr int kMatrixRows = 6;
constexpr int kDot = 5;

constexpr CanvasRect kOuterRing{435, 3, 495, 63};

constexpr CanvasPoint kStepCorner{14, 320};
constexpr int kStepSide = 12;
constexpr int kStepPitch = 16;
constexpr int kSteps = 4;

// As far above the step marker's way as below it.
constexpr CanvasPoint kBlinkAbove{20, 292};
constexpr CanvasPoint kBlinkBelow{20, 408};
constexpr int kBlinkReach = 9;

constexpr std::size_t kRingCount = 30;

bool bitOf(unsigned value, int bit) {
    return (value >> bit & 1u) != 0;
}

} // namespace

DataPadColours dataPadColours(Colour counter, Colour status, std::uint32_t darkness) {
    const double dark = darkness / 100.0;
    return {counter, scaleColour(counter, kLampOff), scaleColour(counter, dark),
            status,  scaleColour(status, kLampOff),  scaleColour(status, dark)};
}

std::vector<FilledRect> progressBar(const DataPadColours& colours, int frame, std::size_t lineCount) {
    const double done = lineCount == 0 ? 0 : frame / static_cast<double>(lineCount);
    const int filled = towardsZero(done * kBarFilled);
    std::vector<FilledRect> bar{{rectAt(kBarCorner, filled, kBarThickness), colours.counter}};
    for (int x = filled; x < kBarLength; ++x) {
        const int weight = towardsZero((x - filled) / static_cast<double>(kBarLength) * 255);
        bar.push_back({rectAt({kBarCorner.x + x, kBarCorner.y}, 1, kBarThickness),
                       mixColours(colours.counter, colours.counterDark, weight)});
    }
    return bar;
}

std::array<FilledRect, 9> frameLamps(const DataPadColours& colours, int frame) {
    std::array<FilledRect, 9> lamps{};
    for (int i = 0; i < static_cast<int>(lamps.size()); ++i)
        lamps[static_cast<std::size_t>(i)] = {
            rectAt({kLampCorner.x + kLampPitch * i, kLampCorner.y}, kLampWidth, kLampHeight),
            bitOf(static_cast<unsigned>(frame), i) ? colours.counter : colours.counterOff};
    return lamps;
}

std::array<FilledRect, 2> runningLight(const DataPadColours& colours, int frame) {
    const int x = kRunningStrip.left + kLampPitch * (frame % kRunningPlaces);
    return {{{kRunningStrip, colours.counterDark},
             {rectAt({x, kRunningStrip.top}, kLampWidth, kLampHeight), colours.counter}}};
}

std::array<FilledRect, 12> statusCells(const DataPadColours& colours, const TextLine& top) {
    std::array<FilledRect, 12> cells{};
    for (int i = 0; i < static_cast<int>(cells.size()); ++i) {
        const int row = i / kStatusColumns;
        const int column = i % kStatusColumns;
        const CanvasPoint corner{kStatusCorner.x + kStatusCell * column, kStatusCorner.y + kStatusRowPitch * row};
        const bool lit = bitOf(top[static_cast<std::size_t>(column)], row);
        cells[static_cast<std::size_t>(i)] = {rectAt(corner, kStatusCell, kStatusCell),
                                              lit ? colours.status : colours.statusOff};
    }
    return cells;
}

std::vector<CanvasRect> matrixDots(const TextLine& top) {
    std::vector<CanvasRect> dots;
    for (int i = 0; i < 8 * kTextColumns; ++i)
        if (bitOf(top[static_cast<std::size_t>(i / 8)], 7 - i % 8))
            dots.push_back(rectAt(
                {kMatrixCorner.x + kDot * (i / kMatrixRows), kMatrixCorner.y + kDot * (i % kMatrixRows)}, kDot, kDot));
    return dots;
}

std::array<FilledRect, kRingCount> orbRings(int frame, std::size_t lineCount) {
    std::array<FilledRect, kRingCount> rings{};
    for (int i = 0; i < static_cast<int>(kRingCount); ++i) {
        const double place = (frame + i) / static_cast<double>(lineCount + kRingCount);
        const int entry = towardsZero(place * 255); // of 256 colours, 128 to a unit of the cycle
        rings[static_cast<std::size_t>(i)] = {
            {kOuterRing.left + i, kOuterRing.top + i, kOuterRing.right - i, kOuterRing.bottom - i},
            colourCycle(entry / 128.0)};
    }
    return rings;
}

Colour colourCycle(double t) {
    const double blue = 2 * std::abs(t - 0.5);
    const double red = t < 0.5 ? 2 * t : 2 * (1 - t);
    const double turn = t < 0.3 ? 0.3 : 1.3;
    const double green = t >= 0.3 && t < 0.8 ? 2 * (t - 0.3) : 2 * (turn - t);
    return makeColour(towardsZero(red * 255), towardsZero(green * 255), towardsZero(blue * 255));
}

std::array<CanvasPoint, 4> blinkMark(int frame) {
    const CanvasPoint centre = frame % 2 == 0 ? kBlinkAbove : kBlinkBelow;
    return {{{centre.x, centre.y - kBlinkReach},
             {centre.x + kBlinkReach, centre.y},
             {centre.x, centre.y + kBlinkReach},
             {centre.x - kBlinkReach, centre.y}}};
}

CanvasRect stepMarker(int frame) {
    return rectAt({kStepCorner.x, kStepCorner.y + kStepPitch * (frame % kSteps)}, kStepSide, kStepSide);
}

std::array<Colour, 128> caseShades(Colour colour) {
    std::array<Colour, 128> shades{};
    for (int i = 0; i < static_cast<int>(shades.size()); ++i) {
        const auto shade = [i](int channel) { return channel * 2 * i / 255; };
        shades[static_cast<std::size_t>(i)] =
            makeColour(shade(redOf(colour)), shade(greenOf(colour)), shade(blueOf(colour)));
    }
    return shades;
}

} // namespace veldran
