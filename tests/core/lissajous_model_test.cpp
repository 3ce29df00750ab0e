// The Lissajous figure's numbers. Curves were computed by a script. Draws nothing.
#include "instruments/lissajous_model.h"
#include "instruments/scope_face_model.h"

#include <gtest/gtest.h>

#include <climits>

namespace veldran {
namespace {

constexpr LissajousParameters kDefault{1, 3, 3, false, 145, 2};

LissajousParameters plain(int horizontal, int vertical, int size) {
    return {horizontal, vertical, 1, false, size, 1};
}

TEST(LissajousModel, CurveFollowsFrequenciesAndPhases) {
    const struct {
        LissajousParameters parameters;
        LissajousPhases phases;
        int offset;
        std::size_t corners;
        CanvasPoint first, quarter, last;
        int sumX, sumY;
    } cases[] = {
        {kDefault, {57, 0}, 60, 291, {283, 205}, {85, 61}, {283, 205}, 59733, 59655},
        {plain(2, 3, 64), {0, -45}, 0, 128, {128, 19}, {0, 19}, {127, 13}, 8192, 8192},
        {plain(32760, 7, 256), {0, 0}, 0, 512, {512, 256}, {512, 0}, {510, 235}, 131072, 131072},
    };
    for (const auto& c : cases) {
        const std::vector<CanvasPoint> curve = lissajousCurve(c.parameters, c.phases, c.offset);
        ASSERT_EQ(curve.size(), c.corners);
        EXPECT_TRUE(curve[0] == c.first && curve[c.corners / 4] == c.quarter && curve.back() == c.last) << c.sumY;
        CanvasPoint sum{};
        for (const CanvasPoint& corner : curve)
            sum = {sum.x + corner.x, sum.y + corner.y};
        EXPECT_EQ(sum, (CanvasPoint{c.sumX, c.sumY}));
    }
    EXPECT_LE(lissajousCurve(plain(1, 1, -64), {}, 0).size(), 3u); // from a host's own ranges: no endless curve
}

TEST(LissajousModel, IncrementTurnsOnePhase) {
    const struct {
        int increment, frames, atFive;
    } cases[] = {{3, 120, 15}, {-60, 6, -300}, {0, 360, 5}, {INT_MIN, 1, -1800}};
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

TEST(ScopeFaceModel, BezelGlowAndGridTakeTheirRoom) {
    ScopeParameters p{145, 120, 10, 15, 20, true, 2};
    const auto values = [&p] {
        const ScopeGeometry g = scopeGeometry(p);
        return std::array{g.bezelWidth,  g.offset,       g.width,       g.height,          g.glowRadius,
                          g.outputWidth, g.outputHeight, g.outputBezel, g.reductionPercent};
    };
    EXPECT_EQ(values(), (std::array{40, 60, 410, 360, 17, 205, 180, 20, 50}));
    EXPECT_EQ(scopeGeometry(p).grid, (CanvasRect{25, 25, 180, 155}));
    p = {145, 120, 7, 0, 20, false, 1};
    EXPECT_EQ(values(), (std::array{0, 7, 159, 134, 0, 159, 134, 0, 100}));
    EXPECT_EQ(scopeGeometry(p).grid, (CanvasRect{3, 3, 156, 131}));
}

} // namespace
} // namespace veldran
