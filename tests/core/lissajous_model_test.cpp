// The Lissajous figure's numbers. Curves were computed by a script. Draws nothing.
#include "instruments/lissajous_model.h"

#include <gtest/gtest.h>

#include <climits>

namespace veldran {
namespace {

constexpr LissajousParameters kDefault{1, 3, 3, false, 145, 2, 15, 10, 20, true};

LissajousParameters plain(int horizontal, int vertical, int size) {
    return {horizontal, vertical, 1, false, size, 1, 0, 0, 0, false};
}

TEST(LissajousModel, CurveFollowsFrequenciesAndPhases) {
    const struct {
        LissajousParameters parameters;
        LissajousPhases phases;
        std::size_t corners;
        CanvasPoint first, quarter, last;
        int sumX, sumY;
    } cases[] = {
        {kDefault, {0, 0}, 291, {350, 205}, {206, 61}, {350, 205}, 59800, 59655},
        {kDefault, {57, 0}, 291, {283, 205}, {85, 61}, {283, 205}, 59733, 59655},
        {plain(2, 3, 64), {0, -45}, 128, {128, 19}, {0, 19}, {127, 13}, 8192, 8192},
        {plain(1, 1, 128), {0, 0}, 256, {256, 128}, {128, 256}, {255, 125}, 32768, 32768},
        {plain(32760, 7, 256), {0, 0}, 512, {512, 256}, {512, 0}, {510, 235}, 131072, 131072},
        {plain(7, 5, 77), {0, 0}, 155, {154, 77}, {67, 153}, {154, 77}, 12012, 11935},
    };
    for (const auto& c : cases) {
        const std::vector<CanvasPoint> curve = lissajousCurve(c.parameters, c.phases);
        ASSERT_EQ(curve.size(), c.corners);
        EXPECT_TRUE(curve[0] == c.first && curve[c.corners / 4] == c.quarter && curve.back() == c.last) << c.sumY;
        CanvasPoint sum{};
        for (const CanvasPoint& corner : curve)
            sum = {sum.x + corner.x, sum.y + corner.y};
        EXPECT_EQ(sum, (CanvasPoint{c.sumX, c.sumY}));
    }
    EXPECT_LE(lissajousCurve(plain(1, 1, -64), {}).size(), 3u); // from a host's own ranges: no endless curve
}

TEST(LissajousModel, IncrementTurnsOnePhase) {
    const struct {
        int increment, frames, atFive;
    } cases[] = {{3, 120, 15},   {45, 8, 225}, {24, 15, 120},      {9, 40, 45},
                 {-60, 6, -300}, {0, 360, 5},  {INT_MIN, 1, -1800}};
    for (const auto& c : cases) {
        LissajousParameters p = kDefault;
        p.increment = c.increment;
        EXPECT_EQ(lissajousFrameCount(c.increment), c.frames) << c.increment;
        EXPECT_EQ(lissajousPhases(p, 5).x, c.atFive);
        EXPECT_EQ(lissajousPhases(p, 5).y, 0);
        p.varyY = true;
        EXPECT_EQ(lissajousPhases(p, 5).x, 0);
        EXPECT_EQ(lissajousPhases(p, 5).y, c.atFive);
    }
}

TEST(LissajousModel, BezelGlowAndGridTakeTheirRoom) {
    LissajousParameters p = kDefault;
    const auto values = [&p] {
        const LissajousGeometry g = lissajousGeometry(p);
        return std::array{g.bezelWidth, g.offset, g.side, g.penWidth, g.glowRadius, g.outputSide};
    };
    EXPECT_EQ(values(), (std::array{40, 60, 410, 4, 17, 205}));
    EXPECT_EQ(lissajousGrid(p, 205, 205), (CanvasRect{25, 25, 180, 180}));
    p.useBezel = false;
    p.glow = 0;
    p.pad = 7;
    EXPECT_EQ(values(), (std::array{0, 14, 318, 4, 0, 159}));
    EXPECT_EQ(lissajousGrid(p, 159, 159), (CanvasRect{3, 3, 156, 156}));
}

} // namespace
} // namespace veldran
