// The shadow of a tuning tube, measured in its picture: how wide it is at a level, where light overlaps, and that
// nothing else changes.
#include "instruments/eye_tube.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace veldran {
namespace {

constexpr int kDiameter = 240;

// A tube with a margin to its left and above, so that its place counts.
struct Drawn {
    StoredPicture picture{kDiameter + 5, kDiameter + 3};

    Drawn(const EyeTube& tube, int level) {
        tube.drawLit(picture.view, {5, 3});
        tube.drawShadow(picture.view, {5, 3}, level);
    }
    // On the cone's middle, `degrees` from the lowest place to the right.
    int green(int degrees) const {
        const double angle = degrees * std::numbers::pi / 180;
        return picture.view.pixel(5 + static_cast<int>(kDiameter * (0.5 + 0.25 * std::sin(angle))),
                                  3 + static_cast<int>(kDiameter * (0.5 + 0.25 * std::cos(angle))))[1];
    }
};

TEST(EyeTube, ShadowNarrowsEvenlyUntilLightOverlaps) {
    const EyeTube tube(kDiameter, {0x40C040, 0x4C4C4C, Edges::Smooth});
    int before = 0;
    for (int level = 0; level < 256; level += 15) {
        const Drawn drawn(tube, level);
        const double half = 50 - level * 58 / 255.0;
        for (int degrees = -80; degrees <= 80; ++degrees)
            if (std::abs(std::abs(degrees) - half) > 4) {
                EXPECT_EQ(drawn.green(degrees) < 90, std::abs(degrees) < half) << level << ' ' << degrees;
            }
        EXPECT_GE(drawn.green(0), before) << level;
        before = drawn.green(0);
    }
    const Drawn full(tube, 255);
    EXPECT_GT(full.green(3), full.green(30) + 8);
    EXPECT_LT(full.green(14), full.green(3) - 8); // the sliver is narrow
}

TEST(EyeTube, NothingButTheShadowMoves) {
    const EyeTube tube(kDiameter, {0x40C040, 0x4C4C4C, Edges::Hard});
    const Drawn silent(tube, 0);
    const Drawn full(tube, 255);
    int moved = 0;
    for (int y = 0; y < silent.picture.view.height; ++y)
        for (int x = 0; x < silent.picture.view.width; ++x) {
            const std::uint8_t* pixel = silent.picture.view.pixel(x, y);
            if (std::equal(pixel, pixel + 3, full.picture.view.pixel(x, y)))
                continue;
            ++moved;
            const double right = x + 0.5 - 5 - kDiameter / 2.0;
            const double down = y + 0.5 - 3 - kDiameter / 2.0;
            EXPECT_TRUE(down > 0 && std::hypot(right, down) < 0.85 * kDiameter / 2) << x << ' ' << y;
        }
    EXPECT_GT(moved, kDiameter * kDiameter / 20);
}

} // namespace
} // namespace veldran
