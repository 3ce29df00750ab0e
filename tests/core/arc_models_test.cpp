// Arcs as lines, before anything is drawn: ends, bounds, periods, the ladder's climbs; and light on pixels.
#include "instruments/scenes/jacobs_ladder_model.h"
#include "instruments/scenes/plasma_arc_model.h"
#include "raster.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace veldran {

bool operator==(const LightPoint& a, const LightPoint& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width;
}

namespace {

constexpr ArcCourse kLevel{{10, 50, 1}, {210, 50, 0.5}, 20, 0};

std::vector<LightPoint> corners(const std::vector<Arc>& arcs) {
    std::vector<LightPoint> all;
    for (const Arc& arc : arcs)
        all.insert(all.end(), arc.points.begin(), arc.points.end());
    return all;
}

std::vector<LightPoint> plasma(const PlasmaParameters& p, int frame) {
    return corners(
        plasmaArcs(plasmaGeometry(p.size), p, LoopNoise(static_cast<std::uint32_t>(p.seed), p.frames), frame));
}

TEST(ArcLine, KeepsItsEndsAndItsBounds) {
    for (std::uint32_t seed = 0; seed < 50; ++seed) {
        const LoopNoise noise(seed, 40);
        for (int frame = 0; frame < 40; frame += 7) {
            const std::vector<LightPoint> line = arcLine(kLevel, noise, 3, frame);
            ASSERT_GE(line.size(), 50u); // segments of 4 pixels and less
            EXPECT_EQ(line.front(), kLevel.from);
            EXPECT_EQ(line.back(), kLevel.to);
            double farthest = 0;
            for (const LightPoint& point : line) {
                farthest = std::max(farthest, std::abs(point.y - 50));
                EXPECT_TRUE(point.width > 0.2 && point.width <= 1);
            }
            EXPECT_TRUE(farthest > 0.5 && farthest < 20) << farthest;
        }
    }
    const std::vector<LightPoint> bowed = arcLine({kLevel.from, kLevel.to, 0, 30}, LoopNoise(1, 10), 0, 0);
    EXPECT_NEAR(bowed[bowed.size() / 2].y, 20, 1e-9);
}

TEST(PlasmaArcs, RepeatByPeriodAndStayInTheTube) {
    for (const int frames : {1, 8, 64, 32760}) {
        const PlasmaParameters p{108, frames, 6, 1, 16, 11259};
        EXPECT_EQ(plasma(p, 5), plasma(p, 5 + frames)) << frames;
        EXPECT_EQ(plasma(p, 5), plasma(p, 5 - frames)) << frames;
    }
    for (const int size : {48, 256}) {
        const PlasmaGeometry g = plasmaGeometry(size);
        for (int frame = 0; frame < 8; ++frame)
            for (const LightPoint& point : plasma({size, 32760, 16, 8, 64, 1000}, frame))
                EXPECT_TRUE(point.y > g.tube.top + g.glass && point.y < g.tube.bottom - g.glass);
    }
}

TEST(PlasmaArcs, EnergyAddsArcsAndComplexityForks) {
    const auto lines = [](int energy, int complexity) {
        std::size_t count = 0;
        for (int frame = 0; frame < 64; ++frame)
            count +=
                plasmaArcs(plasmaGeometry(108), {108, 64, energy, complexity, 16, 0}, LoopNoise(1, 64), frame).size();
        return count;
    };
    EXPECT_GT(lines(8, 1), lines(4, 1) + 64);
    EXPECT_GT(lines(4, 6), lines(4, 1) + 64);
}

TEST(LadderClimb, WholeClimbsFitAnyLength) {
    for (const auto& [frames, wanted] : {std::pair{8, 1}, {40, 1}, {64, 2}, {100, 3}, {3200, 100}}) {
        SCOPED_TRACE(frames);
        int strikes = 0;
        double longest = 0; // step upwards
        for (int frame = 0; frame < frames; ++frame) {
            const double rise = climbAt((frame + 1) % frames, frames).height - climbAt(frame, frames).height;
            strikes += rise < 0;
            longest = std::max(longest, rise);
        }
        EXPECT_EQ(strikes, wanted);
        EXPECT_LT(longest, frames == 8 ? 0.3 : 0.08);
        EXPECT_GT(climbAt(0, frames).strength, 0.99); // no loop begins in the dark
    }
}

TEST(LadderArcs, StandOnTheRodsAndStayInTheFrame) {
    for (const int disturbance : {1, 64})
        for (const int depth : {100, 300}) {
            const LadderParameters p{80, depth, 64, 6, 8, disturbance, 8162};
            const LadderGeometry g = ladderGeometry(p);
            const LoopNoise noise(8162, 64);
            EXPECT_EQ(g.height, p.size * depth / 100);
            int dark = 0;
            for (int frame = 0; frame < p.frames; ++frame) {
                const std::vector<LightPoint> points = corners(ladderArcs(g, p, noise, frame));
                EXPECT_EQ(points, corners(ladderArcs(g, p, noise, frame + p.frames)));
                dark += points.empty();
                if (!points.empty()) {
                    EXPECT_NEAR(g.width / 2.0 - points[0].x, rodDistance(g, points[0].y), g.rodRadius + 0.5);
                }
                for (const LightPoint& point : points)
                    EXPECT_GE(point.y, 0);
            }
            EXPECT_TRUE(dark >= 1 && dark <= 4) << dark;
        }
}

constexpr Colour kBlue = 0xC80000; // 200 of blue
const LightProfile kPlain({1.5, kBlue, 1}, {1, 0, 0}, {1, 0, 0});

int blueAt(const Raster& picture, int x, int y) {
    return *picture.view.pixel(x, y);
}

TEST(LightLayer, LinesAddUpAndJointsAreNoBrighter) {
    Raster picture(40, 20, 24, RowOrder::TopDown, 30);
    LightLayer light(40, 20);
    light.addLine({}, kPlain, 1);
    light.addLine(std::vector<LightPoint>{{8.5, 4.5}}, kPlain, 1); // a point
    const std::vector<LightPoint> bent{{5, 10.5}, {20, 10.5}, {20, 10.5}, {35, 10.5}};
    light.addLine(bent, kPlain, 0.5);
    light.shineOn(picture.view, {0, 0, 30, 20}, 100);
    for (const int x : {6, 19, 20, 29})
        EXPECT_NEAR(blueAt(picture, x, 10), 130, 1) << x;
    EXPECT_NEAR(blueAt(picture, 8, 4), 230, 1);
    for (const auto& [x, y] : {std::pair{5, 4}, {11, 4}, {8, 1}, {8, 7}})
        EXPECT_EQ(blueAt(picture, x, y), 30);
    EXPECT_TRUE(blueAt(picture, 30, 10) == 30 && blueAt(picture, 15, 13) == 30); // beyond the area, and the radius
    EXPECT_EQ(picture.view.pixel(15, 10)[2], 30);
    light.shineOn(picture.view, {0, 0, 30, 20}, 40);
    EXPECT_NEAR(blueAt(picture, 15, 10), 170, 1);
    light.addLine(bent, kPlain, 2);
    light.shineOn(picture.view, {-5, -5, 99, 99}, 100);
    EXPECT_EQ(blueAt(picture, 15, 10), 255); // and no further
    EXPECT_TRUE(picture.paddingIsWhole());
}

TEST(LightLayer, LinesThinAndLeaveThePictureAndAreNeverDotted) {
    Raster picture(60, 21, 24, RowOrder::TopDown, 0), hair(60, 21, 24, RowOrder::TopDown, 0);
    LightLayer light(60, 21);
    const LightProfile wide({0, 0, 0}, {8, kBlue, 1}, {1, 0, 0});
    light.addLine(std::vector<LightPoint>{{-100, 10.5, 1}, {10, 10.5, 1}, {50, 10.5, 0.1}}, wide, 1);
    light.addLine(std::vector<LightPoint>{{-50, -50}, {-90, 4000}}, wide, 1);
    light.shineOn(picture.view, {0, 0, 60, 21}, 100);
    for (const auto& [x, y, lit] :
         {std::tuple{5, 16, true}, {30, 16, false}, {30, 13, true}, {47, 13, false}, {47, 10, true}, {59, 10, false}})
        EXPECT_EQ(blueAt(picture, x, y) > 0, lit) << x << ' ' << y;
    // A hair that leans: every column has its light, and all about the same.
    light.clear();
    light.addLine(std::vector<LightPoint>{{-5, 2, 0.05}, {65, 18, 0.05}}, kPlain, 3);
    light.shineOn(hair.view, {0, 0, 60, 21}, 100);
    for (int x = 0; x < 60; ++x) {
        int column = 0;
        for (int y = 0; y < 21; ++y)
            column += blueAt(hair, x, y);
        EXPECT_NEAR(column, 232, 25) << x; // 3 times 200, dimmed by the root of 0.05 * 3
    }
}

TEST(Colours, TonesAndHues) {
    EXPECT_TRUE(tonedColour(0x204060, 0) == 0x204060 && tonedColour(0x204060, 7) == 0xFFFFFF);
    EXPECT_TRUE(vividColour(0xFFFFFF) == 0xFFFFFF && vividColour(0) == 0);
    EXPECT_EQ(vividColour(0xFDEAEA), 0xFF7F7Fu); // 92 % of the grey 234 taken out of (234, 234, 253)
}

} // namespace
} // namespace veldran
