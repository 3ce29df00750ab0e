// The radar's numbers: sizes, sweep, markers. End points were computed by a script with the radar's own pi of 3.14159.
// Draws nothing.
#include "instruments/radar_model.h"
#include "instruments/shape_runs.h"
#include "render/blend.h"
#include "render/colour.h"

#include "raster.h"

#include <gtest/gtest.h>

#include <cmath>

namespace veldran {
namespace {

constexpr SweepDirection kClockwise = SweepDirection::Clockwise;
constexpr SweepDirection kCounter = SweepDirection::CounterClockwise;
const RadarGeometry kDefault = radarGeometry(526, 526, 160, 10);

TEST(RadarModel, GeometryFollowsFromSizeAndPadding) {
    const struct {
        int size, padding;
        int unit, pad, side, centre, percent;
    } cases[] = {
        {160, 10, 3, 30, 586, 293, 33},
        {48, 2, 10, 20, 566, 283, 10},
        {256, 128, 2, 256, 1038, 519, 50},
    };
    for (const auto& c : cases) {
        const RadarGeometry g = radarGeometry(526, 526, c.size, c.padding);
        EXPECT_EQ((std::array{g.unit, g.pad, g.width, g.height, g.centre.x, g.centre.y, g.percent}),
                  (std::array{c.unit, c.pad, c.side, c.side, c.centre, c.centre, c.percent}))
            << c.size;
    }
    EXPECT_EQ(radarGeometry(100, 526, 160, 0).centre, (CanvasPoint{50, 263}));
}

TEST(RadarModel, IncrementGivesDirectionAndFrames) {
    const struct {
        int increment, clamped, frames;
        SweepDirection direction;
    } cases[] = {{-6, -6, 60, kCounter},
                 {0, 1, 360, kCounter},
                 {7, 7, 52, kClockwise},
                 {INT32_MAX, 60, 6, kClockwise},
                 {INT32_MIN, -60, 6, kCounter}};
    for (const auto& c : cases) {
        EXPECT_EQ(clampIncrement(c.increment), c.clamped) << c.increment;
        EXPECT_EQ(sweepFrameCount(clampIncrement(c.increment)), c.frames) << c.increment;
        EXPECT_EQ(sweepDirection(c.increment), c.direction) << c.increment;
    }
}

TEST(RadarModel, SweepFadesBehindItsLeadingEdge) {
    const struct {
        int angle, trace;
        SweepDirection direction;
        std::size_t lines;
        CanvasPoint first, middle, last;
        std::array<int, 3> greys;
    } cases[] = {{90, 180, kClockwise, 709, {68, 293}, {293, 68}, {518, 292}, {0, 127, 254}},
                 {-300, 30, kCounter, 118, {488, 181}, {511, 235}, {518, 292}, {255, 128, 3}}};
    for (const auto& c : cases) {
        const std::vector<SweepLine> lines = sweepLines(kDefault, c.angle, c.trace, c.direction);
        ASSERT_EQ(lines.size(), c.lines) << c.angle;
        const SweepLine& middle = lines[c.lines / 2];
        EXPECT_TRUE(lines.front().end == c.first && middle.end == c.middle && lines.back().end == c.last) << c.angle;
        EXPECT_EQ((std::array<int, 3>{lines.front().grey, middle.grey, lines.back().grey}), c.greys) << c.angle;
    }
    EXPECT_TRUE(sweepLines(kDefault, 0, 0, kClockwise).empty());
    EXPECT_TRUE(sweepLines(kDefault, 0, -30, kClockwise).empty());
}

TEST(RadarModel, ReadsMarkersForgivingly) {
    const std::string longName(300, 'n');
    const struct {
        std::string line, name;
        int bearing, distance;
    } cases[] = {{"XJS912,330,80,220,52", "XJS912", 330, 80},
                 {"A B,-90, 50", "A B", -90, 50},
                 {"", "", 0, 0},
                 {"A,48", "A", 48, 0},
                 {"A,,48", "A", 0, 0},
                 {"A,x,48", "A", 0, 0},
                 {"A,4x,48", "A", 4, 0},
                 {"A,99999999999,-99999999999", "A", INT32_MAX, INT32_MIN},
                 {longName + ",1,2", longName, 1, 2}};
    for (const auto& c : cases) {
        const RadarMarker marker = parseRadarMarker(c.line);
        EXPECT_EQ(marker.name, c.name) << c.line;
        EXPECT_EQ((std::pair{marker.bearing, marker.distance}), (std::pair{c.bearing, c.distance})) << c.line;
    }
}

TEST(RadarModel, MarkersStandAtTheirPlacesAndStayFinite) {
    EXPECT_EQ(markerPosition(kDefault, {"", 0, 0}), kDefault.centre);
    EXPECT_EQ(markerPosition(kDefault, {"", 48, 48}), (CanvasPoint{373, 221}));
    EXPECT_EQ(markerPosition(kDefault, {"", -90, 50}), (CanvasPoint{181, 293}));
    const CanvasPoint far = markerPosition(kDefault, {"", 90, INT32_MAX});
    EXPECT_GT(far.x, 65535); // beyond every canvas, yet far enough from overflow to add sizes to it
    EXPECT_LT(far.x, INT32_MAX / 2);
    EXPECT_LT(markerPosition(kDefault, {"", INT32_MIN, INT32_MIN}).x, INT32_MAX / 2);
}

TEST(RadarModel, PingMixesWithOneDivision) {
    const Colour marker = makeColour(200, 10, 90);
    const Colour scale = makeColour(255, 0, 17);
    EXPECT_EQ(mixColours(marker, scale, 0), marker);
    EXPECT_EQ(mixColours(marker, scale, 255), scale);
    EXPECT_EQ(mixColours(marker, scale, 77), makeColour(216, 6, 67));
    EXPECT_EQ(mixColours(marker, marker, 128), marker); // two divisions would lose 1 here
}

// Lines with round ends and a notch, in all directions, some beyond the image.
TEST(ShapeRuns, LinesAreFilledAsTheyWereDrawn) {
    const CanvasPoint centre{40, 40};
    for (int degrees = 0; degrees < 360; degrees += 15) {
        const CanvasPoint end = handEnd(centre, 45, degrees);
        Raster drawn(80, 80, 24, RowOrder::BottomUp);
        Raster filled(80, 80, 24, RowOrder::BottomUp);
        for (int y = 0; y < 80; ++y)
            for (int x = 0; x < 80; ++x) {
                const double along = ((x - 40) * (end.x - 40) + (y - 40) * (end.y - 40)) / (45.0 * 45);
                const double t = std::clamp(along, 0.0, 1.0);
                const double distance = std::hypot(x - 40 - t * (end.x - 40), y - 40 - t * (end.y - 40));
                const bool notch = along > 0.5 && along < 0.6 && distance < 1;
                std::fill_n(drawn.view.pixel(x, y), 3, distance <= 4.5 && !notch ? 255 : 0);
                std::fill_n(filled.view.pixel(x, y), 3, 0);
            }
        fillRuns(filled.view, coverOfLine(drawn.view, centre, end, 8), 255);
        EXPECT_EQ(filled.bytes, drawn.bytes) << degrees;
        fillRuns(filled.view, coverIn(drawn.view, {-5, -5, 100, 100}), 0);
        EXPECT_EQ(std::ranges::count(filled.bytes, 255), 0) << degrees;
    }
}

TEST(ShapeRuns, PaperMakesNoDifference) {
    Raster ink(23, 17, 8);
    ink.fillRandom(1);
    for (int y = 0; y < 17; ++y)
        std::fill_n(ink.view.row(y) + y, 5, std::uint8_t{255});
    for (const CanvasPoint at : {CanvasPoint{2, 1}, {-7, -3}, {30, 12}}) {
        Raster whole(40, 20, 24);
        whole.fillRandom(2);
        Raster runs(40, 20, 24);
        runs.fillRandom(2);
        blendInk(whole.view, ink.view, at.x, at.y, 0x3070F0);
        blendInkRuns(runs.view, ink.view, inkRuns(ink.view), at, 0x3070F0);
        EXPECT_EQ(runs.bytes, whole.bytes) << at.x;
    }
}

} // namespace
} // namespace veldran
