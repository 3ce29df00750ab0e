// The pictures of stopwatch, tachometer and altimeter, measured in true-colour frames: sizes, outlines, directions and
// lengths of hands, the pressure drum. Hands are given colours that the dials have not.
#include "built_frames.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using namespace recording;

struct Place {
    double x;
    double y;
};

// Which way a hand points and how far it reaches, from the pixels whose `channel` (0 red, 1 green, 2 blue) is stronger
// than the others, at distances `from` to `to` of `pivot` (frame pixels).
struct Direction {
    double degrees; // clockwise from the top; NaN without such pixels
    double reach;
};

Direction directionOf(const Frame& frame, int channel, Place pivot, double from, double to) {
    double right = 0;
    double down = 0;
    double reach = 0;
    for (int y = 0; y < frame.height(); ++y)
        for (int x = 0; x < frame.width(); ++x) {
            const double dx = x + 0.5 - pivot.x;
            const double dy = y + 0.5 - pivot.y;
            const double distance = std::hypot(dx, dy);
            if (distance < from || distance > to)
                continue;
            const COLORREF colour = frame.colour(x, y);
            const int light[] = {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
            const int excess = light[channel] - std::max(light[(channel + 1) % 3], light[(channel + 2) % 3]);
            if (excess <= 60) // the metal's tint is weaker
                continue;
            right += excess * dx;
            down += excess * dy;
            reach = std::max(reach, distance);
        }
    if (reach == 0)
        return {std::nan(""), 0};
    return {std::atan2(right, -down) * 180 / std::numbers::pi, reach};
}

double between(double degrees, double others) {
    return std::remainder(degrees - others, 360);
}

// A unit is the artwork's height by the size, cut; sides are (side + 2 x unit x padding) x (100 / unit cut) %, rounded.
TEST(Dials, FramesHaveTheirSizeAndOutline) {
    const struct {
        const char* instrument;
        const char* settings;
        std::size_t frames;
        int width, height;
        COLORREF panel;
    } cases[] = {{"MainStopwatch", "Frames=2 Size=160 BackColor=#FF0000 *UseAlphaGreyBack=0", 2, 160, 210,
                  0x0000FF},                                                      // 4: 638 x 841 at 25 %
                 {"MainTach", "Frames=2 Size=48 Padding=2", 2, 53, 53, 0x7F7F7F}, // 11: 589 at 9 %
                 {"MainAltimeter", "Frames=8 Size=128", 8, 142, 142, 0x7F7F7F}};
    withBuilder("MainTach", "*MainAlphaTrans=1", [&](Builder& dial) {
        for (const auto& row : cases) {
            SCOPED_TRACE(row.settings);
            dial.choose(row.instrument);
            const Recording seen = dial.build(row.settings);
            ASSERT_EQ(seen.frames.size(), row.frames);
            EXPECT_GE(seen.count(kHostShowProgress), static_cast<int>(row.frames));
            for (const Frame& frame : seen.frames) {
                ASSERT_TRUE(frame.width() == row.width && frame.height() == row.height && frame.bits() == 32);
                int solid = 0;
                int soft = 0;
                for (int at = 0; at < row.width * row.height; ++at) {
                    const int alpha = frame.alpha(at % row.width, at / row.width);
                    solid += alpha == 255;
                    soft += alpha > 0 && alpha < 255;
                    ASSERT_TRUE(alpha > 0 || frame.colour(at % row.width, at / row.width) == row.panel) << at;
                }
                EXPECT_EQ(frame.alpha(0, 0) + frame.alpha(row.width - 1, row.height - 1), 0);
                EXPECT_GT(solid, row.width * row.height * 2 / 5);
                EXPECT_GT(soft, row.width); // the edge is smooth
            }
        }
    });
}

TEST(Stopwatch, HandsShowTheSecondsInRealTime) {
    withBuilder("MainStopwatch", "*Truecolour=1 *MainDelay=7", [](Builder& stopwatch) {
        const std::vector<Frame> frames =
            stopwatch.frames("Size=256 Frames=62 LargeHandColor=#FF0000 SmallHandColor=#0000FF");
        ASSERT_EQ(frames.size(), 62u);
        const Place large{297 / 2.0, 501 / 2.0}; // half the artwork's pixels, 20 of them margin
        const Place small{297 / 2.0, 401 / 2.0};
        const double cases[][3] = {{0, 0, 0}, {21, 125, 0}, {61, 6, 6}}; // seconds, degrees of both hands
        for (const auto& [seconds, largeDegrees, smallDegrees] : cases) {
            SCOPED_TRACE(seconds);
            const Frame& frame = frames[static_cast<std::size_t>(seconds)];
            const Direction hand = directionOf(frame, 0, large, 88, 120); // beyond the small dial
            EXPECT_NEAR(between(hand.degrees, largeDegrees), 0, 0.5);
            EXPECT_NEAR(hand.reach, 101, 1.5);
            const Direction other = directionOf(frame, 2, small, 5, 60);
            EXPECT_NEAR(between(other.degrees, smallDegrees), 0, 1.5);
            EXPECT_NEAR(other.reach, 34, 1.5);
            EXPECT_EQ(frame.info.delay, 100u);
        }
        // The tail points away from the hand and ends 28 pixels from the centre; the dial is light.
        EXPECT_LT(GetGValue(frames[15].colour(148 - 25, 250)), 80);
        EXPECT_GT(GetGValue(frames[15].colour(148 - 32, 250)), 180);
        EXPECT_EQ(stopwatch.frame("Frames=2 RealTime=0", 1).info.delay, 7u);
    });
}

TEST(Tachometer, NeedleFollowsThePoints) {
    // Rest is 240 degrees, and a turn of 241.2 at full scale is cut to whole degrees: 60.3, 120.6 and 180.9.
    constexpr double kDegrees[4] = {240, 300, 0, 60};
    withBuilder("MainTach", "*Truecolour=1 Size=256 Frames=4 DataPointList=0,0;100,1000", [&](Builder& tachometer) {
        const std::vector<Frame> frames = tachometer.frames("");
        ASSERT_EQ(frames.size(), 4u);
        for (std::size_t i = 0; i < 4; ++i) {
            const Direction needle = directionOf(frames[i], 0, {292.5 / 2, 292.5 / 2}, 20, 106); // within the red zone
            EXPECT_NEAR(between(needle.degrees, kDegrees[i]), 0, 0.5) << i;
            const double angle = kDegrees[i] * std::numbers::pi / 180;
            const auto at = [&](double radius) {
                return frames[i].colour(static_cast<int>(146 + radius * std::sin(angle)),
                                        static_cast<int>(146 - radius * std::cos(angle)));
            };
            EXPECT_GT(GetRValue(at(112)), GetGValue(at(112)) + 60) << i; // ends at 114
            EXPECT_LT(GetRValue(at(119)), GetGValue(at(119)) + 60) << i;
        }
    });
}

void expectPointers(const Frame& frame) {
    constexpr Place kMiddle{253 / 2.0, 253 / 2.0};
    constexpr double kScale = 0.33;
    const Direction hundreds = directionOf(frame, 0, kMiddle, 240 * kScale, 384 * kScale);
    const Direction thousands = directionOf(frame, 1, kMiddle, 120 * kScale, 384 * kScale);
    const Direction tenThousands = directionOf(frame, 2, kMiddle, 60 * kScale, 384 * kScale);
    EXPECT_NEAR(between(hundreds.degrees, 144), 0, 0.6);
    EXPECT_GT(hundreds.reach, 325 * kScale - 2); // into the minor marks
    EXPECT_LT(hundreds.reach, 345 * kScale);
    EXPECT_NEAR(between(thousands.degrees, 50), 0, 0.8);
    EXPECT_LT(thousands.reach, hundreds.reach * 0.8);
    EXPECT_NEAR(between(tenThousands.degrees, 77), 0, 1.5);
    EXPECT_LT(tenThousands.reach, thousands.reach * 0.9);
}

TEST(Altimeter, PointersShowTheAltitudeAndAWindowThePressure) {
    constexpr char kColours[] = "*Truecolour=1 Size=256 UsePadding=0 Frames=8 HunColor=#FF0000 ThouColor=#00FF00 "
                                "TenThouColor=#0000FF";
    constexpr char kPoints[] = " DataPointList=0,200;100,200"; // pointers at 0, 180 and 18 degrees
    Frame standard{};
    Frame low{};
    withBuilder("MainAltimeter", kColours, [&](Builder& altimeter) {
        const std::vector<Frame> frames = altimeter.frames("DataPointList=0,856;100,856"); // 21,400 feet
        ASSERT_EQ(frames.size(), 8u);
        expectPointers(frames[5]);
        standard = altimeter.frame(kPoints);
    });
    withBuilder("MainAltimeter", kColours + std::string(kPoints) + " *AdvancedAltimeterBarometricPressure=281",
                [&](Builder& altimeter) { low = altimeter.frame(""); });
    int changed = 0;
    for (int at = 0; at < 253 * 253; ++at) {
        const int x = at % 253;
        const int y = at / 253;
        const bool isWindow = x >= 190 && x < 227 && y >= 105 && y < 146;
        ASSERT_TRUE(isWindow || standard.colour(x, y) == low.colour(x, y)) << x << ' ' << y;
        changed += standard.colour(x, y) != low.colour(x, y);
    }
    EXPECT_GT(changed, 30);
}

} // namespace
