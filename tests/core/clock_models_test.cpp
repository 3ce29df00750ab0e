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

TEST(CountdownModel, TenthsStandSmallBehindTheRest) {
    const CountdownGeometry geometry = countdownGeometry(kDefault);
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
    EXPECT_EQ(bezel.rings[0].corners, (CanvasRect{4, 4, 194, 94}));
    for (std::size_t i = 1; i < bezel.rings.size(); ++i) {
        const BevelRing& ring = bezel.rings[i];
        EXPECT_EQ(ring.corners.left, bezel.rings[i - 1].corners.left + 2);
        EXPECT_EQ(ring.corners.bottom, bezel.rings[i - 1].corners.bottom - 2);
        EXPECT_LT(redOf(ring.topLeft), redOf(bezel.rings[i - 1].topLeft));
        EXPECT_LT(redOf(ring.bottomRight), redOf(bezel.rings[i - 1].bottomRight));
        EXPECT_GT(redOf(ring.bottomRight), redOf(ring.topLeft));
    }
    EXPECT_EQ(bezel.inner.rect.left, bezel.rings.back().corners.left + 2);
    EXPECT_TRUE(countdownBezel(geometry, 0, makeColour(100, 100, 100)).rings.empty());
}

} // namespace
} // namespace veldran
