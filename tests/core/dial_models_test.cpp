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
    const struct {
        const char* points;
        int frames;
        std::vector<double> speeds;
    } cases[] = {
        {"50,100;100,500", 5, {.1, .1 + .4 / 3, .1 + .8 / 3, 0, 0}}, // moved to the start
        {"0,100;80,200;20,300;100,400", 10, {.1, .1125, .125, .1375, .15, .1625, .175, .1875, .3, .3125}}, // one back
        {"0,100;50,200;50,300;100,400", 4, {.1, .15, .3, .35}},                                            // a jump
        {"-2147483648,1000;2147483647,1000;-2147483648,0;100,0", 3, {1, 1, 1}},
        {"0,0;29,500;100,1000", 0, {}}};
    for (const auto& c : cases) {
        const std::vector<double> speeds = tachometerSpeeds(c.points, c.frames);
        ASSERT_EQ(speeds.size(), c.speeds.size()) << c.points;
        for (std::size_t i = 0; i < speeds.size(); ++i)
            EXPECT_NEAR(speeds[i], c.speeds[i], 1e-12) << c.points << " frame " << i;
    }
    EXPECT_EQ(tachometerSpeeds("0,0;29,500;100,1000", 100)[28], .5); // 100 x 0.29 is truncated to 28
    const std::string late = "0,500;" + std::string(246, ' ') + "100,500";
    EXPECT_EQ(tachometerSpeeds(late, 2)[1], .5);
    EXPECT_EQ(tachometerSpeeds(' ' + late + '0', 2)[1], .275); // cut to 50 thousandths
}

TEST(TachometerModel, NeedleTurnsInWholeDegrees) {
    const std::pair<double, CanvasPoint> cases[] = {
        {0, {74, 386}}, {.6, {365, 64}}, {1, {467, 389}}, {-.25, {272, 500}}};
    for (const auto& [speed, tip] : cases)
        EXPECT_EQ(tachometerNeedle(50, speed).tip, (CanvasPoint{tip.x + 50, tip.y + 50})) << speed;
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
    const struct {
        int feet;
        std::array<int, 3> degrees; // hundreds, thousands, ten thousands
    } cases[] = {{0, {0, 0, 0}},        {21400, {144, 50, 77}}, {999, {359, 35, 3}},
                 {100025, {9, 0, 360}}, {-250, {-90, -9, 0}},   {40000, {0, 0, 144}}};
    for (const auto& c : cases) {
        const AltimeterAngles angles = altimeterAngles(c.feet);
        EXPECT_EQ((std::array{angles.hundreds, angles.thousands, angles.tenThousands}), c.degrees) << c.feet;
    }
}

TEST(AltimeterModel, DrumShowsThePressureAndItsNeighbours) {
    const auto drum = altimeterDrum(20, 299);
    EXPECT_EQ((std::array{drum[0].text, drum[1].text, drum[2].text}),
              (std::array<std::string, 3>{"  29.9", " 29.8", " 30.0"}));
    EXPECT_EQ((std::array{drum[1].escapement, drum[2].escapement}), (std::array{70, -70}));
    EXPECT_EQ(altimeterDrum(0, UINT32_MAX)[2].text, " 429496729.6");
}

// The longest pointer first; its tip points where its angle says, and a full turn and the margin only move it.
TEST(AltimeterModel, PointersAndHubStandAboutThePivot) {
    const AltimeterPointers up = altimeterPointers(0, {0, 0, 0});
    const AltimeterPointers right = altimeterPointers(10, {90, 450, -270});
    int reach = 400;
    for (const auto pointer :
         {&AltimeterPointers::hundreds, &AltimeterPointers::thousands, &AltimeterPointers::tenThousands}) {
        const std::vector<CanvasPoint>&upright = up.*pointer, &turned = right.*pointer;
        EXPECT_LT(384 - upright.front().y, reach);
        reach = 384 - upright.front().y;
        for (std::size_t i = 0; i < upright.size(); ++i) {
            const CanvasPoint corner = upright[i], opposite = upright[(upright.size() - i) % upright.size()];
            EXPECT_EQ(opposite, (CanvasPoint{2 * 384 - corner.x, corner.y}));
            EXPECT_EQ(turned[i], (CanvasPoint{394 + 384 - corner.y, 394 + corner.x - 384}));
        }
    }
    const std::array<HubDisc, 12> hub = altimeterHub(7);
    EXPECT_EQ(hub[0].colour, makeColour(200, 200, 200));
    EXPECT_EQ(hub[11].colour, makeColour(31, 31, 31));
    for (const HubDisc& disc : hub)
        EXPECT_EQ(disc.box.left + disc.box.right, 2 * (384 + 7));
    EXPECT_EQ(hub[0].box.right - hub[0].box.left, 88);
    EXPECT_EQ(hub[11].box.bottom - hub[11].box.top, 44);
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
    for (const int unit : {2, 5, 10})
        for (const int level : {0, 77, 255}) {
            const NeedleShape needle = needleShape(kNeedle, level, unit, {7, 9});
            const CanvasPoint pivot = {256 + 7, 418 + 9};
            EXPECT_NEAR(distance(pivot, needle.lit[3]), 291, 1);
            EXPECT_NEAR(distance(pivot, needle.dark[0]), 50, 1);
            EXPECT_EQ(needle.lit[0], needle.dark[0]); // the halves share the axis
            EXPECT_EQ(needle.lit[3], needle.dark[3]);
            EXPECT_LT(needle.lit[2].x, needle.dark[2].x); // light falls from the left
            const double tip = distance(needle.lit[2], needle.dark[2]);
            EXPECT_GE(tip, 1.4 * unit - 1.5); // corners lie on whole pixels
            EXPECT_GT(distance(needle.lit[1], needle.dark[1]), tip);
        }
}

constexpr CountdownParameters kCountdown{0, 0, 30, true, 36, true, 10, true, 10, true};

CountdownParameters from(int hours, int minutes, int seconds, bool tenths) {
    CountdownParameters p = kCountdown;
    p.hours = hours;
    p.minutes = minutes;
    p.seconds = seconds;
    p.tenths = tenths;
    return p;
}

TEST(CountdownModel, CountsDownToZero) {
    const CountdownParameters whole = from(99, 59, 59, false);
    ASSERT_EQ(countdownSteps(whole), 359999);
    for (int frame = 1; frame <= 359999; ++frame) { // each a second less than the one before
        const CountdownTime a = countdownTime(whole, frame - 1);
        const CountdownTime b = countdownTime(whole, frame);
        ASSERT_TRUE(b.minutes < 60 && b.seconds < 60 && b.tenths == 0) << frame;
        ASSERT_EQ(3600 * (a.hours - b.hours) + 60 * (a.minutes - b.minutes) + a.seconds - b.seconds, 1) << frame;
    }
    EXPECT_EQ(countdownTime(whole, 359999), CountdownTime{});
    const CountdownParameters tenths = from(1, 0, 0, true);
    ASSERT_EQ(countdownSteps(tenths), 36000);
    EXPECT_EQ(countdownTime(tenths, 1), (CountdownTime{0, 59, 59, 9}));
    EXPECT_EQ(countdownTime(tenths, 35999), (CountdownTime{0, 0, 0, 1}));
    EXPECT_EQ(countdownSteps(from(0, 0, 0, true)), 0);
    EXPECT_EQ(countdownSteps(from(INT_MAX, 0, 0, true)), INT_MAX - 1); // one more is still an int
    EXPECT_EQ(countdownSteps(from(-1, 0, 0, false)), 0);
}

TEST(CountdownModel, MarginsGrowWithTheDigitsWhenAntialiased) {
    CountdownParameters p = kCountdown;
    const auto values = [&p] {
        const CountdownGeometry g = countdownGeometry(p);
        return std::array{g.margin, g.width, g.height, g.bezelLine, g.percent};
    };
    EXPECT_EQ(values(), (std::array{140, 1745, 547, 7, 14}));
    p.antialias = false;
    EXPECT_EQ(values(), (std::array{20, 1505, 307, 1, 14}));
    p.useBezel = p.tenths = false;
    EXPECT_EQ(values(), (std::array{10, 1343, 287, 1, 14}));
    p.usePadding = false;
    p.size = 300;
    EXPECT_EQ(values(), (std::array{0, 1323, 267, 1, 100}));
}

TEST(CountdownModel, TenthsStandSmallBehindTheRest) {
    const CountdownGeometry geometry = countdownGeometry(kCountdown);
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
    const struct {
        int seconds;
        CanvasPoint largeTip, largeTail, smallTip;
    } cases[] = {{21, {482, 636}, {272, 489}, {317, 353}}, // 125 degrees, not 126
                 {125, {417, 347}, {290, 569}, {331, 355}},
                 {32759, {296, 321}, {322, 576}, {350, 363}}};
    for (const auto& c : cases) {
        const StopwatchHands hands = stopwatchHands(40, c.seconds);
        EXPECT_TRUE(hands.largeCentre == (CanvasPoint{317, 521}) && hands.smallCentre == (CanvasPoint{317, 421}));
        EXPECT_TRUE(hands.largeTip == c.largeTip && hands.largeTail == c.largeTail && hands.smallTip == c.smallTip)
            << c.seconds;
    }
}

TEST(ClockModels, RealTimeIsInTheHostsUnit) {
    constexpr std::uint32_t kHundredths = 1;
    constexpr std::uint32_t kMilliseconds = 2;
    EXPECT_EQ((std::array{countdownDelay(true, kHundredths), countdownDelay(true, kMilliseconds),
                          countdownDelay(false, kHundredths), countdownDelay(false, kMilliseconds),
                          stopwatchDelay(true, kHundredths, 7), stopwatchDelay(true, kMilliseconds, 7),
                          stopwatchDelay(false, kMilliseconds, 7)}),
              (std::array<std::uint32_t, 7>{10, 100, 100, 1000, 100, 1000, 7}));
}

TEST(CountdownModel, BezelGoesInwardsAndDarkens) {
    CountdownGeometry geometry{};
    geometry.width = 200;
    geometry.height = 100;
    geometry.bezelLine = 2;
    const CountdownBezel bezel = countdownBezel(geometry, 9, makeColour(100, 100, 100));
    EXPECT_EQ(bezel.outer[0].rect, (CanvasRect{0, 0, 198, 98}));
    EXPECT_EQ(bezel.outer[0].colour, makeColour(66, 66, 66));
    EXPECT_EQ(bezel.outer[1].rect, (CanvasRect{2, 2, 196, 96}));
    ASSERT_GE(bezel.rings.size(), 2u);
    int inset = 4, topLeft = 256, bottomRight = 256;
    for (const BevelRing& ring : bezel.rings) {
        EXPECT_EQ(ring.corners, (CanvasRect{inset, inset, 198 - inset, 98 - inset}));
        EXPECT_TRUE(redOf(ring.topLeft) < topLeft && redOf(ring.bottomRight) < bottomRight) << inset;
        topLeft = redOf(ring.topLeft);
        bottomRight = redOf(ring.bottomRight);
        EXPECT_GT(bottomRight, topLeft);
        inset += 2;
    }
    EXPECT_EQ(bezel.inner.rect.left, inset);
    EXPECT_TRUE(countdownBezel(geometry, 0, makeColour(100, 100, 100)).rings.empty());
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
        const std::vector<SweepLine> lines = sweepLines(kRadar, c.angle, c.trace, c.direction);
        ASSERT_EQ(lines.size(), c.lines) << c.angle;
        const SweepLine& middle = lines[c.lines / 2];
        EXPECT_TRUE(lines.front().end == c.first && middle.end == c.middle && lines.back().end == c.last) << c.angle;
        EXPECT_EQ((std::array<int, 3>{lines.front().grey, middle.grey, lines.back().grey}), c.greys) << c.angle;
    }
    EXPECT_TRUE(sweepLines(kRadar, 0, 0, kClockwise).empty());
    EXPECT_TRUE(sweepLines(kRadar, 0, -30, kClockwise).empty());
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
    EXPECT_EQ(markerPosition(kRadar, {"", 0, 0}), kRadar.centre);
    EXPECT_EQ(markerPosition(kRadar, {"", 48, 48}), (CanvasPoint{373, 221}));
    EXPECT_EQ(markerPosition(kRadar, {"", -90, 50}), (CanvasPoint{181, 293}));
    const CanvasPoint far = markerPosition(kRadar, {"", 90, INT32_MAX});
    EXPECT_GT(far.x, 65535); // beyond every canvas, yet far enough from overflow to add sizes to it
    EXPECT_LT(far.x, INT32_MAX / 2);
    EXPECT_LT(markerPosition(kRadar, {"", INT32_MIN, INT32_MIN}).x, INT32_MAX / 2);
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
