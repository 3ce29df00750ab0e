// Needles against the law of VU scales, and their shape. Draws nothing.
#include "instruments/needle_meter_model.h"

#include <gtest/gtest.h>

#include <cmath>

namespace veldran {
namespace {

constexpr NeedlePlace kPlace = {{256, 418}, 50, 291, 40};

// Deflections of a scale that ends at +3 dB, per cent of its travel.
TEST(NeedleMeterModel, DeflectionIsLinearInVoltage) {
    const std::pair<double, double> law[] = {{3, 100}, {0, 70.8}, {-3, 50.1}, {-10, 22.4}, {-20, 7.1}};
    for (const auto& [decibels, percent] : law) {
        const int level = static_cast<int>(std::lround(255 * std::pow(10, (decibels - 3) / 20)));
        EXPECT_NEAR((needleDegrees(kPlace, level) + 40) / 80 * 100, percent, 0.25) << decibels;
    }
    EXPECT_EQ(needleDegrees(kPlace, 0), -40);
    EXPECT_GE(20 * std::log10(kLampLevel / 255.0) + 3, 2);
    EXPECT_LT(20 * std::log10((kLampLevel - 1) / 255.0) + 3, 2);
}

TEST(NeedleMeterModel, NeedleRunsFromTheCoverToTheScaleAndTapers) {
    const auto distance = [](CanvasPoint a, CanvasPoint b) { return std::hypot(a.x - b.x, a.y - b.y); };
    for (const int unit : {2, 5, 10})
        for (const int level : {0, 77, 255}) {
            const NeedleShape needle = needleShape(kPlace, level, unit, {7, 9});
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

} // namespace
} // namespace veldran
