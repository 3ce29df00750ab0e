// The bubble chamber's numbers. The random numbers were recorded from the rand of Windows' C runtime; bubbles and
// places were computed by a script. Draws nothing.
#include "instruments/bubble_model.h"

#include "base/runtime_random.h"

#include <gtest/gtest.h>

#include <numeric>

namespace veldran {
namespace {

constexpr BubbleParameters kDefault{10632, 18, 60, 140, 128, 12, 25};

std::array<int, 6> valuesOf(const Bubble& b) {
    return {b.x, b.y, b.diameter, b.speed, b.level, static_cast<int>(b.angle)};
}

CanvasPoint sumOf(const std::vector<BubblePlace>& places) {
    return std::accumulate(places.begin(), places.end(), CanvasPoint{}, [](CanvasPoint sum, const BubblePlace& place) {
        return CanvasPoint{sum.x + place.centre.x, sum.y + place.centre.y};
    });
}

TEST(RuntimeRandom, GivesTheNumbersOfTheRuntime) {
    RuntimeRandom random(0xFFFFFFFF);
    for (const int number : {35, 29739, 3374, 11141, 31308, 7870})
        EXPECT_EQ(random.next(), number);
    long sum = 0;
    for (int i = 0; i < 9994; ++i)
        sum += random.next();
    EXPECT_EQ(sum, 163720364);
}

TEST(BubbleModel, SeedGivesTheBubbles) {
    const BubbleSet set = makeBubbleSet(kDefault);
    ASSERT_EQ(set.bubbles.size(), 40u);
    EXPECT_EQ(valuesOf(set.bubbles[0]), (std::array{82, 80, 24, 1, 255, 2}));
    EXPECT_EQ(valuesOf(set.bubbles[9]), (std::array{74, 75, 17, 2, 160, 132}));
    EXPECT_EQ(valuesOf(set.bubbles[39]), (std::array{85, 8, 12, 4, 128, 30}));
}

// As wide as the tank, and wider: the smaller bubbles keep the places that the sequence gives them.
TEST(BubbleModel, BubblesMayBeWiderThanTheTank) {
    const BubbleSet wider = makeBubbleSet({1000, 8, 40, 40, 64, 64, 0});
    EXPECT_EQ(valuesOf(wider.bubbles[0]), (std::array{104, 61, 118, 1, 255, 69}));
    EXPECT_EQ(valuesOf(wider.bubbles[4]), (std::array{49, 45, 95, 2, 160, 64}));
}

TEST(BubbleModel, FramesDoNotDependOnTheOrderInWhichTheyAreAsked) {
    const BubbleParameters parameters{1000, 8, 60, 140, 100, 10, 99}; // steps of 3.6 degrees, which sums round
    BubbleMotion steady(makeBubbleSet(parameters));
    BubbleMotion jumping(makeBubbleSet(parameters));
    for (int frame = 0; frame < 100; ++frame) {
        const CanvasPoint sum = sumOf(steady.places(frame));
        jumping.places((frame * 37) % 100);
        EXPECT_EQ(sumOf(jumping.places(frame)), sum) << frame;
    }
    EXPECT_EQ(sumOf(steady.places(33)), (CanvasPoint{1174, -2396}));
    EXPECT_EQ(sumOf(steady.places(99)), (CanvasPoint{1733, -11276}));
}

TEST(BubbleModel, RowsComeBackAtTheBottom) {
    BubbleMotion motion(makeBubbleSet(kDefault));
    const std::vector<BubblePlace> first = motion.places(0);
    const std::vector<BubblePlace> last = motion.places(kDefault.frames); // one past the end: the loop has no seam
    for (std::size_t i = 0; i < first.size(); ++i)
        EXPECT_EQ((CanvasPoint{last[i].centre.x, wrappedRow(last[i].centre.y, 280)}), first[i].centre);
    EXPECT_EQ((std::array{wrappedRow(-1, 280), wrappedRow(-281, 280), wrappedRow(-1120, 280), wrappedRow(283, 280)}),
              (std::array{279, 279, 0, 283}));
}

TEST(BubbleModel, ShadesOfSpritesAndBevels) {
    EXPECT_EQ(bubbleGreys(9, 255), (std::vector<std::uint8_t>{255, 192, 128, 64}));
    const TankGeometry tank = tankGeometry(120, 280);
    EXPECT_EQ((std::array{tank.sideBevel, tank.endBevel, tank.corner}), (std::array{30, 7, 20}));
}

TEST(BubbleModel, BevelsRiseFromTheirDepthToTheWholePicture) {
    // 255 - 100 at the border, then up by the sine of equal steps, 30 and 60 degrees, cut off.
    EXPECT_EQ(bevelFactors(3, 100), (std::vector{155, 204, 241}));
    EXPECT_TRUE(bevelFactors(0, 100).empty());
}

} // namespace
} // namespace veldran
