// The numbers of countdown and stopwatch. Ends of hands and shades of bezels were computed by a script. Draws nothing.
#include "instruments/countdown_model.h"
#include "instruments/stopwatch_model.h"

#include <gtest/gtest.h>

#include <climits>

namespace veldran {
namespace {

constexpr CountdownParameters kDefault{0, 0, 30, true, 36, true, 10, true, 10, true};

CountdownParameters from(int hours, int minutes, int seconds, bool tenths) {
    CountdownParameters p = kDefault;
    p.hours = hours;
    p.minutes = minutes;
    p.seconds = seconds;
    p.tenths = tenths;
    return p;
}

// The clock put back step by step, as a person would with its four wheels.
CountdownTime putBack(CountdownTime time, bool tenths) {
    if (tenths && --time.tenths >= 0)
        return time;
    time.tenths = tenths ? 9 : 0;
    if (--time.seconds >= 0)
        return time;
    time.seconds = 59;
    if (--time.minutes >= 0)
        return time;
    return {time.hours - 1, 59, time.seconds, time.tenths};
}

TEST(CountdownModel, CountsDownToZero) {
    const struct {
        CountdownParameters start;
        int steps;
    } cases[] = {{from(0, 0, 0, false), 0},    {from(0, 0, 0, true), 0},     {from(0, 0, 30, true), 300},
                 {from(2, 0, 5, false), 7205}, {from(1, 0, 0, true), 36000}, {from(99, 59, 59, false), 359999}};
    for (const auto& c : cases) {
        ASSERT_EQ(countdownSteps(c.start), c.steps);
        CountdownTime expected{c.start.hours, c.start.minutes, c.start.seconds, 0};
        for (int frame = 0; frame <= c.steps; ++frame) {
            ASSERT_EQ(countdownTime(c.start, frame), expected) << frame;
            expected = putBack(expected, c.start.tenths);
        }
        EXPECT_EQ(expected.hours, -1);
    }
    EXPECT_EQ(countdownSteps(from(INT_MAX, 0, 0, true)), INT_MAX - 1); // one more is still an int
    EXPECT_EQ(countdownSteps(from(-1, 0, 0, false)), 0);
}

TEST(CountdownModel, MarginsGrowWithTheDigitsWhenAntialiased) {
    CountdownParameters p = kDefault;
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

TEST(CountdownModel, GlyphsStandWhereTheyBelong) {
    const CountdownGeometry geometry = countdownGeometry(kDefault);
    const std::vector<CountdownGlyph> glyphs = countdownGlyphs(geometry, {12, 34, 56, 7}, true);
    const std::array cells{1, 2, 10, 3, 4, 10, 5, 6, 10, 7};
    const std::array places{0, 193, 386, 479, 672, 865, 958, 1151, 1344, 1390};
    ASSERT_EQ(glyphs.size(), cells.size());
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const bool large = i < 8;
        const int left = cells[i] * (large ? 172 : 86);
        EXPECT_EQ(glyphs[i].strip, large ? GlyphStrip::Large : GlyphStrip::Small) << i;
        EXPECT_EQ(glyphs[i].source,
                  (large ? CanvasRect{left, 0, left + 172, 267} : CanvasRect{left, 0, left + 86, 133}))
            << i;
        EXPECT_EQ(glyphs[i].target, (CanvasPoint{140 + places[i], 140})) << i;
    }
    EXPECT_EQ(countdownGlyphs(geometry, {12, 34, 56, 7}, false).size(), 8u);
}

TEST(CountdownModel, BezelFadesInwards) {
    const CountdownBezel bezel = countdownBezel(countdownGeometry(kDefault), 10, 0xCCD9D9);
    EXPECT_EQ(bezel.outer[0].rect, (CanvasRect{0, 0, 1738, 540}));
    EXPECT_EQ(bezel.outer[0].colour, makeColour(143, 143, 134));
    EXPECT_EQ(bezel.outer[1].rect, (CanvasRect{7, 7, 1731, 533}));
    EXPECT_EQ(bezel.outer[1].colour, makeColour(255, 255, 255));
    ASSERT_EQ(bezel.rings.size(), 7u);
    EXPECT_EQ(bezel.rings[0].corners, (CanvasRect{14, 14, 1724, 526}));
    EXPECT_EQ(bezel.rings[0].topLeft, 0xCCD9D9u);
    EXPECT_EQ(bezel.rings[1].topLeft, makeColour(207, 207, 195));
    EXPECT_EQ(bezel.rings[6].corners, (CanvasRect{56, 56, 1682, 484}));
    EXPECT_EQ(bezel.rings[6].topLeft, makeColour(164, 164, 155));
    EXPECT_EQ(bezel.rings[6].bottomRight, makeColour(194, 194, 194));
    EXPECT_EQ(bezel.inner.rect, (CanvasRect{63, 63, 1675, 477}));
    EXPECT_EQ(bezel.inner.colour, makeColour(21, 21, 20));
    EXPECT_TRUE(countdownBezel(countdownGeometry(kDefault), 3, 0xCCD9D9).rings.empty());
}

TEST(StopwatchModel, HandsShowSecondsAndMinutes) {
    const struct {
        int seconds;
        CanvasPoint largeTip, largeTail, smallTip;
    } cases[] = {{0, {317, 319}, {317, 577}, {317, 353}},    {15, {518, 521}, {262, 521}, {317, 353}},
                 {21, {482, 636}, {272, 489}, {317, 353}}, // 125 degrees, not 126
                 {59, {296, 321}, {322, 576}, {317, 353}},   {60, {317, 319}, {317, 577}, {324, 354}},
                 {125, {417, 347}, {290, 569}, {331, 355}},  {3661, {338, 321}, {312, 576}, {324, 354}},
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

} // namespace
} // namespace veldran
