// Pictures of the Lissajous figure, the bubble chamber and the countdown, measured in true-colour frames: curves,
// light, bubbles, shades, digits, margins, delays, backgrounds.
#include "built_frames.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using namespace recording;

constexpr double kDegree = std::numbers::pi / 180;

// The colour that a host without palettes was told.
std::uint32_t backgroundOf(const Recording& seen) {
    const auto sent = std::ranges::find(seen.messages, std::uint32_t{kHostSetBackground}, &Message::command);
    return sent == seen.messages.end() ? 0xDEAD : static_cast<std::uint32_t>(sent->lParam);
}

// What is tested of a figure that turns in six frames.
void expectTrace(const std::vector<Frame>& frames, int horizontal, int vertical, int step, bool varyY) {
    ASSERT_EQ(frames.size(), 6u);
    for (int i = 0; i < 6; ++i) {
        const Frame& frame = frames[static_cast<std::size_t>(i)];
        ASSERT_EQ(frame.width(), 138);
        double length = 0;
        double light = 0;
        for (double t = 0; t < 360; t += 0.25) {
            const double x = (horizontal * t + (varyY ? 0 : i * step)) * kDegree;
            const double y = (vertical * t + (varyY ? i * step : 0)) * kDegree;
            const COLORREF colour =
                frame.colour(static_cast<int>(69 + 64 * std::cos(x)), static_cast<int>(69 + 64 * std::sin(y)));
            ASSERT_EQ(colour, 0x00FF00u) << i << ' ' << t;
            length += 16 * kDegree * std::hypot(horizontal * std::sin(x), vertical * std::cos(y));
        }
        for (int at = 0; at < 138 * 138; ++at)
            light += GetGValue(frame.colour(at % 138, at / 138)) / 255.0;
        EXPECT_LT(light, 4 * length * 1.15) << i; // nowhere else; short lines of whole pixels are wider
    }
}

void expectFace(const Frame& frame, bool hasBezel) {
    const int bezel = hasBezel ? 16 : 0;
    const int last = 96 + 2 * 7 + 2 * bezel - 1;
    ASSERT_EQ(frame.width(), last + 1);
    int first = last; // columns of the scale
    int end = 0;
    for (int at = 0; at <= last; ++at)
        if ((frame.colour(at, 50) & 0xFFFF) == 0 && frame.colour(at, 50) > 0) {
            first = std::min(first, at);
            end = at;
        }
    EXPECT_EQ(first, 3 + bezel);
    EXPECT_EQ(end, last - first);
    EXPECT_EQ(frame.colour(last, last), hasBezel ? 255u : 0u);
    EXPECT_EQ(frame.alpha(last, last), hasBezel ? 0 : 255);
    EXPECT_EQ(frame.alpha(last / 2, 0) + frame.alpha(last, last / 2) + frame.alpha(9, 9), 3 * 255);
}

// On a black screen; green is the trace, blue the scale, red the panel.
TEST(Lissajous, TraceGlowAndFaceHaveTheirPlaces) {
    const std::string colours = "GreenColor=#00FF00 BlackColor=0 ScaleColor=#0000FF PanelColor=#FF0000";
    withBuilder("MainLissajous", "*Truecolour=1 Increment=33 " + colours, [](Builder& figure) {
        const std::string bare = "UseBezel=0 UseScale=0 ";
        const std::string thin = bare + "Size=128 Padsize=5 TraceSize=4 Glow=0 ";
        expectTrace(figure.frames(thin + "Horz=1 Vert=3 PhaseY=0 Increment=0"), 1, 3, -60, false);
        expectTrace(figure.frames(thin + "Horz=3 Vert=2 PhaseY=1"), 3, 2, 60, true);
        EXPECT_GT(figure.frame(bare + "Glow=64 Vert=1 Size=200").colour(20, 110), 0u); // within the circle
        EXPECT_EQ(figure.frame(bare + "Glow=0 Vert=1 Size=200").colour(20, 110), 0u);
        const std::string face = "Size=96 Padsize=7 BezelSize=16 GreenColor=0 *MainAlphaTrans=1 *UseAlphaGreyBack=0 ";
        expectFace(figure.frame(face + "UseBezel=0"), false);
        expectFace(figure.frame(face + "UseBezel=1"), true);
    });
}

void expectBubblesThatRiseAndComeBack(const std::vector<Frame>& frames) {
    ASSERT_EQ(frames.size(), 64u);
    const auto light = [&](std::size_t i, int y) {
        int sum = 0;
        for (int x = 0; x < 60; ++x)
            sum += GetRValue(frames[i].colour(x, y));
        return sum;
    };
    // The rows fit better to those above them of the frame before than to those below.
    for (std::size_t i = 0; i < 64; ++i) {
        long up = 0;
        long down = 0;
        for (int y = 4; y < 136; ++y) {
            up += std::abs(light((i + 1) % 64, y) - light(i, y + 4));
            down += std::abs(light((i + 1) % 64, y) - light(i, y - 4));
        }
        EXPECT_LT(up, down) << i;
    }
    expectLoop(frames);
}

TEST(BubbleChamber, BubblesRiseBetweenDarkEdgesAndCutCorners) {
    withBuilder("MainBubble", "*Truecolour=1 Frames=64 WhiteColor=#FFFFFF", [](Builder& tank) {
        expectBubblesThatRiseAndComeBack(tank.frames("BlueColor=0 UseBevel=0 UseRoundCorners=0"));
        const std::string white = "Wide=96 Deep=160 BlueColor=#FFFFFF PanelColor=#FF0000 Density=8 "; // bubbles unseen
        const Frame shaded = tank.frame(white + "BevelFactor=200", 40);
        const auto shade = [](int k, int width) { return std::sin((k + 0.25) / width * 90 * kDegree) * 200 + 55; };
        for (int k = 0; k < 24; ++k) { // a quarter of the width, two canvas columns each, and a quarter of that in rows
            EXPECT_NEAR(GetGValue(shaded.colour(k, 80)), shade(k, 24), 2.5) << k;
            EXPECT_NEAR(GetGValue(shaded.colour(95 - k, 80)), shade(k, 24), 2.5) << k;
            EXPECT_NEAR(GetGValue(shaded.colour(48, k / 4)), shade(k / 4, 6), 2.5) << k;
            EXPECT_NEAR(GetGValue(shaded.colour(48, 159 - k / 4)), shade(k / 4, 6), 2.5) << k;
        }
        // What is not tank has the panel's red and is transparent, in the same measure.
        const Frame cut = tank.frame(white + "UseBevel=0 *MainAlphaTrans=1 *UseAlphaGreyBack=0");
        for (int y = 0; y < 160; ++y)
            for (int x = 0; x < 96; ++x)
                EXPECT_NEAR(GetGValue(cut.colour(x, y)), cut.alpha(x, y), 4) << x << ' ' << y;
        EXPECT_EQ(cut.alpha(0, 0) + cut.alpha(95, 0) + cut.alpha(0, 159) + cut.alpha(95, 159), 0);
        EXPECT_EQ(cut.alpha(5, 5) + cut.alpha(48, 0) + cut.alpha(0, 80), 3 * 255); // the corner's radius is 8
    });
}

// The digit whose cell begins at (x, y) of a frame that shows two canvas pixels in one; 10 when it is none. Places are
// the middles of its segments: top, upper and lower right, bottom, lower and upper left, middle.
std::ptrdiff_t digitAt(const Frame& frame, int x, int y) {
    const int places[7][2] = {{100, 14}, {151, 66}, {136, 199}, {73, 252}, {22, 199}, {37, 66}, {86, 133}};
    const std::string digits[] = {"1111110", "0110000", "1101101", "1111001", "0110011",
                                  "1011011", "1011111", "1110000", "1111111", "1111011"};
    std::string lit;
    for (const auto& [u, v] : places)
        lit += GetGValue(frame.colour(x + u / 2, y + v / 2)) > 127 ? '1' : '0';
    return std::ranges::find(digits, lit) - digits;
}

void expectCountdown(const std::vector<Frame>& frames) {
    ASSERT_EQ(frames.size(), 72u);
    for (int left = 71; left >= 0; --left) {
        const Frame& frame = frames[static_cast<std::size_t>(71 - left)];
        ASSERT_EQ(frame.width(), 668); // (1323 + 2 x 6) / 2 and (267 + 2 x 6) / 2, rounded
        ASSERT_EQ(frame.height(), 140);
        EXPECT_EQ(frame.info.delay, 1000u);
        const int digits[][2] = {{0, 0},           {193, 0}, {479, 0}, {672, left / 60}, {958, left % 60 / 10},
                                 {1151, left % 10}};
        for (const auto& [x, digit] : digits)
            EXPECT_EQ(digitAt(frame, 3 + x / 2, 3), digit) << left;
        for (const int x : {386, 865}) // the colons' dots, and the paper between them
            EXPECT_TRUE(frame.colour(3 + (x + 41) / 2, 50) > 127 && frame.colour(3 + (x + 32) / 2, 90) > 127 &&
                        frame.colour(3 + (x + 37) / 2, 70) == 0);
        EXPECT_EQ(frame.alpha(0, 0) + frame.alpha(667, 139) + frame.alpha(300, 70), 3 * 255);
    }
}

TEST(Countdown, DigitsCountDownInABezelThatFadesInwards) {
    const auto count = [](Builder& clock) {
        const Recording seen = clock.build("Minutes=1 Seconds=11 UseHund=0 Padding=3 UseBezel=0 *MainAlphaTrans=1");
        EXPECT_EQ(backgroundOf(seen), 0x7F7F7Fu);
        expectCountdown(seen.frames);

        const Frame smooth = clock.frame("Seconds=0 Padding=5");
        ASSERT_EQ(smooth.width(), 763); // (1465 + 2 x 30) / 2, rounded
        for (int i = 3; i < 8; ++i)     // the bevel gets darker inwards
            EXPECT_TRUE(smooth.colour(i, 70) < smooth.colour(i - 1, 70) && smooth.colour(i, 70) > 0) << i;
        EXPECT_EQ(smooth.colour(11, 70), 0u);
        const Recording plain =
            clock.build("Seconds=0 Padding=5 *MainAntialias=0 *MainAlphaTrans=1 *UseAlphaGreyBack=0");
        EXPECT_EQ(plain.frames.at(0).width(), 748); // (1465 + 2 x 15) / 2
        EXPECT_EQ(backgroundOf(plain), 0u);
    };
    withBuilder("MainCountdown", "*Truecolour=1 Size=128 RedColor=#00FF00 BlackColor=0", count, 0);
}

} // namespace
