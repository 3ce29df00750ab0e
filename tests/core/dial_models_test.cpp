// The numbers of dials and clocks: tachometer, altimeter, needles, countdown, stopwatch and radar. Computed by scripts
// or by hand; the radar has its own pi of 3.14159. Draws nothing but the runs of shapes that hands and sweeps are made
// of.
#include "instruments/dials/altimeter_model.h"
#include "instruments/dials/stopwatch_model.h"
#include "instruments/dials/tachometer_model.h"
#include "instruments/displays/countdown_model.h"
#include "instruments/meters/needle_meter_model.h"
#include "instruments/scopes/radar_model.h"
#include "instruments/shape_runs.h"
#include "raster.h"
#include "render/blend.h"
#include "render/colour.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <tuple>

namespace veldran {
namespace {

TEST(ArtworkGeometry, IsTruncatedToWholeUnits) {
    const ArtworkGeometry g = artworkGeometry(558, 761, 160, 10);
    EXPECT_EQ((std::array{g.unit, g.pad, g.width, g.height, g.percent}), (std::array{4, 40, 638, 841, 25}));
    EXPECT_EQ(artworkGeometry(762, 762, 0, 0).percent, 1); // sizes that no panel offers
    EXPECT_EQ(artworkGeometry(762, 762, 763, 0).percent, 100);
}

TEST(TachometerModel, SpeedsFollowThePoints) {
    const std::vector<double> speeds =
        tachometerSpeeds("0,140;14,200;20,680;39,870;44,220;67,310;80,570;92,680;100,140", 64);
    for (const auto& [frame, speed] : {std::pair{4, .17}, {12, .68}, {30, .23285714}, {63, .23}})
        EXPECT_NEAR(speeds.at(static_cast<std::size_t>(frame)), speed, 1e-8) << frame;
}

TEST(TachometerModel, OddListsStayInTheTable) {
    const std::pair<const char*, std::vector<double>> cases[] = {
        {"50,100;100,500", {.1, .1 + .4 / 3, .1 + .8 / 3, 0, 0}}, // moved to the start
        {"0,100;80,200;20,300;100,400", {.1, .1125, .125, .1375, .15, .1625, .175, .1875, .3, .3125}}, // one back
        {"0,100;50,200;50,300;100,400", {.1, .15, .3, .35}},                                           // a jump
        {"-2147483648,1000;2147483647,1000;-2147483648,0;100,0", {1, 1, 1}},
        {"0,0;29,500;100,1000", {}}};
    for (const auto& [points, expected] : cases) {
        const std::vector<double> speeds = tachometerSpeeds(points, static_cast<int>(expected.size()));
        ASSERT_EQ(speeds.size(), expected.size()) << points;
        for (std::size_t i = 0; i < speeds.size(); ++i)
            EXPECT_NEAR(speeds[i], expected[i], 1e-12) << points << " frame " << i;
    }
    EXPECT_EQ(tachometerSpeeds("0,0;29,500;100,1000", 100)[28], .5); // 100 x 0.29 is truncated to 28
    const std::string late = "0,500;" + std::string(246, ' ') + "100,500";
    EXPECT_EQ(tachometerSpeeds(late, 2)[1], .5);
    EXPECT_EQ(tachometerSpeeds(' ' + late + '0', 2)[1], .275); // cut to 50 thousandths
}

TEST(TachometerModel, NeedleTurnsInWholeDegrees) {
    for (const auto& [speed, x, y] : {std::tuple{0.0, 74, 386}, {.6, 365, 64}, {1.0, 467, 389}, {-.25, 272, 500}})
        EXPECT_EQ(tachometerNeedle(50, speed).tip, (CanvasPoint{x + 50, y + 50})) << speed;
    EXPECT_EQ(tachometerNeedle(50, 0).pivot, (CanvasPoint{322, 322}));
}

TEST(AltimeterModel, AltitudesFollowThePoints) {
    const std::vector<int> feet = altimeterAltitudes("0,640;14,670;39,680;67,610;80,560;92,570;100,640", 128);
    ASSERT_EQ(feet.size(), 128u);
    EXPECT_EQ((std::array{feet[0], feet[1], feet[5], feet[16], feet[17], feet[64], feet[127]}),
              (std::array{16000, 16044, 16220, 16705, 16750, 16270, 15840}));
    // Exactly 15 in decimal figures; the order of the arithmetic leaves it just below.
    EXPECT_EQ(altimeterAltitudes("0,0;100,10", 50)[3], 14);
    EXPECT_EQ(altimeterAltitudes("0,0", 8), std::vector<int>(8, 0));
    EXPECT_EQ(altimeterAltitudes("0,2147483647;100,2147483647", 8), std::vector<int>(8, INT32_MAX));
}

TEST(AltimeterModel, PointersPointWhereTheAltitudeIs) {
    // Feet; degrees of hundreds, thousands and ten thousands.
    const std::array<int, 4> cases[] = {{0, 0, 0, 0},        {21400, 144, 50, 77}, {999, 359, 35, 3},
                                        {100025, 9, 0, 360}, {-250, -90, -9, 0},   {40000, 0, 0, 144}};
    for (const auto& c : cases) {
        const AltimeterAngles angles = altimeterAngles(c[0]);
        EXPECT_EQ((std::array{c[0], angles.hundreds, angles.thousands, angles.tenThousands}), c);
    }
}

TEST(AltimeterModel, DrumShowsThePressureAndItsNeighbours) {
    const auto drum = altimeterDrum(20, 299);
    EXPECT_EQ((std::array{drum[0].text, drum[1].text, drum[2].text}),
              (std::array<std::string, 3>{"  29.9", " 29.8", " 30.0"}));
    EXPECT_EQ((std::array{drum[1].escapement, drum[2].escapement}), (std::array{70, -70}));
    EXPECT_EQ(altimeterDrum(0, UINT32_MAX)[2].text, " 429496729.6");
}

constexpr NeedlePlace kNeedle = {{256, 418}, 50, 291, 40};

// Deflections of a scale that ends at +3 dB, per cent of its travel.
TEST(NeedleMeterModel, DeflectionIsLinearInVoltage) {
    const std::pair<double, double> law[] = {{3, 100}, {0, 70.8}, {-3, 50.1}, {-10, 22.4}, {-20, 7.1}};
    for (const auto& [decibels, percent] : law) {
        const int level = static_cast<int>(std::lround(255 * std::pow(10, (decibels - 3) / 20)));
        EXPECT_NEAR((needleDegrees(kNeedle, level) + 40) / 80 * 100, percent, 0.25) << decibels;
    }
    EXPECT_EQ(needleDegrees(kNeedle, 0), -40);
    EXPECT_GE(20 * std::log10(kLampLevel / 255.0) + 3, 2);
    EXPECT_LT(20 * std::log10((kLampLevel - 1) / 255.0) + 3, 2);
}

TEST(NeedleMeterModel, NeedleRunsFromTheCoverToTheScaleAndTapers) {
    const auto distance = [](CanvasPoint a, CanvasPoint b) { return std::hypot(a.x - b.x, a.y - b.y); };
    constexpr CanvasPoint kPivot = {256 + 7, 418 + 9};
    for (const int unit : {2, 5, 10})
        for (const int level : {0, 77, 255}) {
            const auto [lit, dark] = needleShape(kNeedle, level, unit, {7, 9});
            EXPECT_NEAR(distance(kPivot, lit[3]), 291, 1);
            EXPECT_NEAR(distance(kPivot, dark[0]), 50, 1);
            EXPECT_TRUE(lit[0] == dark[0] && lit[3] == dark[3]); // the halves share the axis
            EXPECT_LT(lit[2].x, dark[2].x);                      // light falls from the left
            const double tip = distance(lit[2], dark[2]);
            EXPECT_GE(tip, 1.4 * unit - 1.5); // corners lie on whole pixels
            EXPECT_GT(distance(lit[1], dark[1]), tip);
        }
}

CountdownParameters from(int hours, int minutes, int seconds, bool tenths) {
    return {hours, minutes, seconds, tenths, 36, true, 10, true, 10, true};
}

TEST(CountdownModel, CountsDownToZero) {
    const CountdownParameters whole = from(99, 59, 59, false);
    ASSERT_EQ(countdownSteps(whole), 359999);
    for (int frame = 0; frame <= 359999; ++frame) {
        const int left = 359999 - frame;
        ASSERT_EQ(countdownTime(whole, frame), (CountdownTime{left / 3600, left / 60 % 60, left % 60, 0})) << frame;
    }
    const CountdownParameters tenths = from(1, 0, 0, true);
    EXPECT_EQ(countdownTime(tenths, 1), (CountdownTime{0, 59, 59, 9}));
    EXPECT_EQ(countdownTime(tenths, 35999), (CountdownTime{0, 0, 0, 1}));
    EXPECT_EQ((std::array{countdownSteps(tenths), countdownSteps(from(0, 0, 0, true)),
                          countdownSteps(from(-1, 0, 0, false)), countdownSteps(from(INT_MAX, 0, 0, true))}),
              (std::array{36000, 0, 0, INT_MAX - 1})); // one more is still an int
}

TEST(CountdownModel, MarginsGrowWithTheDigitsWhenAntialiased) {
    const std::pair<CountdownParameters, std::array<int, 5>> cases[] = {
        {from(0, 0, 30, true), {140, 1745, 547, 7, 14}},
        {{0, 0, 30, true, 36, true, 10, true, 10, false}, {20, 1505, 307, 1, 14}},
        {{0, 0, 30, false, 36, true, 10, false, 10, false}, {10, 1343, 287, 1, 14}},
        {{0, 0, 30, false, 300, false, 10, false, 10, false}, {0, 1323, 267, 1, 100}}};
    for (const auto& [parameters, values] : cases) {
        const CountdownGeometry g = countdownGeometry(parameters);
        EXPECT_EQ((std::array{g.margin, g.width, g.height, g.bezelLine, g.percent}), values);
    }
}

TEST(CountdownModel, TenthsStandSmallBehindTheRest) {
    const CountdownGeometry geometry = countdownGeometry(from(0, 0, 30, true));
    const std::vector<CountdownGlyph> glyphs = countdownGlyphs(geometry, {12, 34, 56, 7}, true);
    ASSERT_EQ(glyphs.size(), 10u);
    EXPECT_TRUE(glyphs[7].strip == GlyphStrip::Large && glyphs[8].strip == GlyphStrip::Small);
    EXPECT_EQ(glyphs[8].source, (CanvasRect{860, 0, 946, 133})); // the colon
    EXPECT_EQ(glyphs[8].target, (CanvasPoint{140 + 1344, 140}));
    EXPECT_EQ(glyphs[9].source, (CanvasRect{602, 0, 688, 133}));
    EXPECT_EQ(glyphs[9].target, (CanvasPoint{140 + 1390, 140}));
    EXPECT_EQ(countdownGlyphs(geometry, {12, 34, 56, 7}, false).size(), 8u);
}

TEST(StopwatchModel, HandsShowSecondsAndMinutes) {
    using Points = std::array<CanvasPoint, 5>; // both centres, the large hand's ends, the small one's
    const std::pair<int, Points> cases[] = {
        {21, {{{317, 521}, {317, 421}, {482, 636}, {272, 489}, {317, 353}}}}, // 125 degrees, not 126
        {125, {{{317, 521}, {317, 421}, {417, 347}, {290, 569}, {331, 355}}}},
        {32759, {{{317, 521}, {317, 421}, {296, 321}, {322, 576}, {350, 363}}}}};
    for (const auto& [seconds, points] : cases) {
        const StopwatchHands hands = stopwatchHands(40, seconds);
        EXPECT_EQ((Points{hands.largeCentre, hands.smallCentre, hands.largeTip, hands.largeTail, hands.smallTip}),
                  points)
            << seconds;
    }
}

TEST(ClockModels, RealTimeIsInTheHostsUnit) {
    for (const auto& [flags, second] : {std::pair{1u, 100u}, {2u, 1000u}}) { // hundredths, milliseconds
        EXPECT_EQ(countdownDelay(true, flags), second / 10);
        EXPECT_EQ(countdownDelay(false, flags), second);
        EXPECT_EQ(stopwatchDelay(true, flags, 7), second);
        EXPECT_EQ(stopwatchDelay(false, flags, 7), 7u);
    }
}

constexpr SweepDirection kClockwise = SweepDirection::Clockwise;
constexpr SweepDirection kCounter = SweepDirection::CounterClockwise;
const RadarGeometry kRadar = radarGeometry(526, 526, 160, 10);

TEST(RadarModel, GeometryFollowsFromSizeAndPadding) {
    const std::array<int, 9> cases[] = {{160, 10, 3, 30, 586, 586, 293, 293, 33},
                                        {48, 2, 10, 20, 566, 566, 283, 283, 10},
                                        {256, 128, 2, 256, 1038, 1038, 519, 519, 50}};
    for (const auto& c : cases) {
        const RadarGeometry g = radarGeometry(526, 526, c[0], c[1]);
        EXPECT_EQ((std::array{c[0], c[1], g.unit, g.pad, g.width, g.height, g.centre.x, g.centre.y, g.percent}), c);
    }
    EXPECT_EQ(radarGeometry(100, 526, 160, 0).centre, (CanvasPoint{50, 263}));
}

TEST(RadarModel, IncrementGivesDirectionAndFrames) {
    const std::tuple<int, int, int, SweepDirection> cases[] = {{-6, -6, 60, kCounter},
                                                               {0, 1, 360, kCounter},
                                                               {7, 7, 52, kClockwise},
                                                               {INT32_MAX, 60, 6, kClockwise},
                                                               {INT32_MIN, -60, 6, kCounter}};
    for (const auto& [increment, clamped, frames, direction] : cases) {
        EXPECT_EQ(clampIncrement(increment), clamped);
        EXPECT_EQ(sweepFrameCount(clamped), frames) << increment;
        EXPECT_EQ(sweepDirection(increment), direction) << increment;
    }
}

TEST(RadarModel, SweepFadesBehindItsLeadingEdge) {
    const struct {
        int angle, trace;
        SweepDirection direction;
        std::size_t lines;
        std::array<std::array<int, 3>, 3> places; // x, y and grey of the first, the middle and the last line
    } cases[] = {{90, 180, kClockwise, 709, {{{68, 293, 0}, {293, 68, 127}, {518, 292, 254}}}},
                 {-300, 30, kCounter, 118, {{{488, 181, 255}, {511, 235, 128}, {518, 292, 3}}}}};
    for (const auto& c : cases) {
        const std::vector<SweepLine> lines = sweepLines(kRadar, c.angle, c.trace, c.direction);
        ASSERT_EQ(lines.size(), c.lines) << c.angle;
        for (std::size_t i = 0; i < 3; ++i) {
            const SweepLine& line = lines[std::array{std::size_t{0}, c.lines / 2, c.lines - 1}[i]];
            EXPECT_EQ((std::array<int, 3>{line.end.x, line.end.y, line.grey}), c.places[i]) << c.angle;
        }
    }
    for (const int trace : {0, -30})
        EXPECT_TRUE(sweepLines(kRadar, 0, trace, kClockwise).empty());
}

TEST(RadarModel, ReadsMarkersForgivingly) {
    const std::string longName(300, 'n');
    const std::tuple<std::string, std::string, int, int> cases[] = {
        {"XJS912,330,80,220,52", "XJS912", 330, 80},
        {"A B,-90, 50", "A B", -90, 50},
        {"", "", 0, 0},
        {"A,48", "A", 48, 0},
        {"A,,48", "A", 0, 0},
        {"A,x,48", "A", 0, 0},
        {"A,4x,48", "A", 4, 0},
        {"A,99999999999,-99999999999", "A", INT32_MAX, INT32_MIN},
        {longName + ",1,2", longName, 1, 2}};
    for (const auto& c : cases) {
        const auto [name, bearing, distance] = parseRadarMarker(std::get<0>(c));
        EXPECT_EQ((std::tuple{std::get<0>(c), name, bearing, distance}), c);
    }
}

TEST(RadarModel, MarkersStandAtTheirPlacesAndStayFinite) {
    const auto place = [](int bearing, int distance) { return markerPosition(kRadar, {"", bearing, distance}); };
    EXPECT_EQ(place(0, 0), kRadar.centre);
    EXPECT_EQ(place(48, 48), (CanvasPoint{373, 221}));
    EXPECT_EQ(place(-90, 50), (CanvasPoint{181, 293}));
    EXPECT_GT(place(90, INT32_MAX).x, 65535); // beyond every canvas, yet far enough from overflow to add sizes to it
    for (const auto& [bearing, distance] : {std::pair{90, INT32_MAX}, {INT32_MIN, INT32_MIN}})
        EXPECT_LT(place(bearing, distance).x, INT32_MAX / 2);
}

TEST(RadarModel, PingMixesWithOneDivision) {
    const Colour marker = makeColour(200, 10, 90), scale = makeColour(255, 0, 17);
    for (const auto& [glow, mixed] : {std::pair{0, marker}, {255, scale}, {77, makeColour(216, 6, 67)}})
        EXPECT_EQ(mixColours(marker, scale, glow), mixed);
    EXPECT_EQ(mixColours(marker, marker, 128), marker); // two divisions would lose 1 here
}

// Lines with round ends and a notch, in all directions, some beyond the image.
TEST(ShapeRuns, LinesAreFilledAsTheyWereDrawn) {
    const CanvasPoint centre{40, 40};
    for (int degrees = 0; degrees < 360; degrees += 15) {
        const CanvasPoint end = handEnd(centre, 45, degrees);
        Raster drawn(80, 80, 24, RowOrder::BottomUp, 0), filled(80, 80, 24, RowOrder::BottomUp, 0);
        for (int y = 0; y < 80; ++y)
            for (int x = 0; x < 80; ++x) {
                const double along = ((x - 40) * (end.x - 40) + (y - 40) * (end.y - 40)) / (45.0 * 45);
                const double t = std::clamp(along, 0.0, 1.0);
                const double distance = std::hypot(x - 40 - t * (end.x - 40), y - 40 - t * (end.y - 40));
                const bool notch = along > 0.5 && along < 0.6 && distance < 1;
                std::fill_n(drawn.view.pixel(x, y), 3, distance <= 4.5 && !notch ? 255 : 0);
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
        Raster whole(40, 20, 24), runs(40, 20, 24);
        blendInk(whole.view, ink.view, at.x, at.y, 0x3070F0);
        blendInkRuns(runs.view, ink.view, inkRuns(ink.view), at, 0x3070F0);
        EXPECT_EQ(runs.bytes, whole.bytes) << at.x;
    }
}

} // namespace
} // namespace veldran
