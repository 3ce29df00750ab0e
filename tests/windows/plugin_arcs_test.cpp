// Plasma arc and Jacob's ladder, measured in true-colour frames: sizes, loops, colours and where light may fall.
#include "built_frames.h"

#include <numeric>

namespace {

using namespace recording;

const std::string kPlasma = "MainEffect = 14\nTruecolour = 1\nMainArclightFrames = 12\n";
const std::string kLadder = "MainEffect = 11\nTruecolour = 1\nMainLadderFrames = 24\n";

double brightness(const Frame& frame) {
    return std::accumulate(frame.bitmap.begin() + 40, frame.bitmap.end(), 0.0);
}

TEST(PlasmaArc, LoopsAndRepeats) {
    const std::vector<Frame> frames = buildFrames(kPlasma);
    ASSERT_EQ(frames.size(), 12u);
    EXPECT_TRUE(frames[0].width() == 108 && frames[0].height() == 50); // 46 % of the length, rounded
    EXPECT_LE(difference(frames.back(), frames.front()), largestStep(frames) * 5 / 4);
    EXPECT_EQ(buildFrames(kPlasma)[7].bitmap, frames[7].bitmap);
    EXPECT_NE(buildFrames(kPlasma + "MainArclightSeed = 11260\n")[7].bitmap, frames[7].bitmap);
}

TEST(PlasmaArc, AfterImagesAddTheLastTwoFrames) {
    // So dim that hardly any channel ends at 255. Scenery without light comes from arcs of no colour.
    const std::string dim = kPlasma + "MainArclightEnergy = 1\nMainArclightWhiteColor = 2105376\n"
                                      "MainArclightGlareColor = 3145728\n";
    const std::vector<Frame> with = buildFrames(dim);
    const std::vector<Frame> without = buildFrames(dim + "MainArclightAfterImage = 0\n");
    const double dark =
        brightness(buildFrames(dim + "MainArclightWhiteColor = 0\nMainArclightGlareColor = 0\n").front());
    const auto light = [&](std::size_t i) { return brightness(without[i % 12]) - dark; };
    for (const std::size_t i : {0u, 1u, 6u}) {
        const double expected = light(i) + 0.4 * light(i + 11) + 0.3 * light(i + 10);
        EXPECT_NEAR(brightness(with[i]) - dark, expected, expected / 20) << i;
    }
}

TEST(PlasmaArc, EveryColourHasItsPlace) {
    const Frame plain = buildFrames(kPlasma)[0];
    const struct {
        const char* setting;
        int x, y; // a pixel that turns greener, or darker where light was green too
        int change;
    } cases[] = {
        {"BlueColor", 54, 40, 1}, {"TubeColor", 54, 6, 1},   {"CapColor", 8, 20, 1},    {"ElectrodeColor", 18, 25, 1},
        {"PanelColor", 54, 1, 1}, {"WhiteColor", 54, 25, 0}, {"GlareColor", 54, 25, 0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.setting);
        const Frame changed = buildFrames(kPlasma + "MainArclight" + row.setting + " = 65280\n")[0];
        if (row.change > 0)
            EXPECT_GT(GetGValue(changed.colour(row.x, row.y)), GetGValue(plain.colour(row.x, row.y)));
        else
            EXPECT_LT(brightness(changed), brightness(plain));
        EXPECT_EQ(changed.colour(54, 49) == 65280, std::string(row.setting) == "PanelColor");
    }
    EXPECT_NE(plain.colour(54, 6), 0x200000u); // the wall
    EXPECT_EQ(buildFrames(kPlasma + "MainArclightShowTube = 0\n")[0].colour(54, 6), 0x200000u);
}

TEST(PlasmaArc, LightStaysInTheTube) {
    for (const Frame& frame : buildFrames(kPlasma + "MainArclightEnergy = 16\nMainArclightDisturbance = 64\n"
                                                    "MainArclightComplexity = 8\nMainArclightSize = 256\n"
                                                    "MainAlphaTrans = 1\nUseAlphaGreyBack = 0\n")) {
        for (int x = 0; x < frame.width(); ++x)
            for (const int y : {0, 3, frame.height() - 1}) {
                ASSERT_EQ(frame.colour(x, y) & 0xFFFFFF, 0x202020u) << x << ' ' << y;
                ASSERT_EQ(frame.alpha(x, y), 0);
            }
        EXPECT_TRUE(frame.alpha(128, 59) == 255 && frame.alpha(20, 59) == 255);
    }
}

// The row of the brightest pixel in the frame's middle column; -1 when nothing glows there.
int arcRow(const Frame& frame) {
    int best = -1;
    int most = 0x30 + 60;
    for (int y = 0; y < frame.height() * 85 / 100; ++y)
        if (const int green = GetGValue(frame.colour(frame.width() / 2, y)); green > most) {
            most = green;
            best = y;
        }
    return best;
}

TEST(JacobsLadder, ArcClimbsBreaksAndStrikesAgain) {
    const std::vector<Frame> frames = buildFrames(kLadder);
    ASSERT_EQ(frames.size(), 24u);
    EXPECT_TRUE(frames[0].width() == 80 && frames[0].height() == 160);
    int climbed = 0;
    int dark = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const int row = arcRow(frames[i]);
        const int next = arcRow(frames[(i + 1) % 24]); // the seam lies within the climb
        dark += row < 0;
        climbed += row >= 0 && next >= 0 && next < row + 4 && next > row - 20; // it shivers
    }
    EXPECT_GE(climbed, 19);
    EXPECT_LE(dark, 3);
}

TEST(JacobsLadder, DepthSeedAndColoursShow) {
    const Frame plain = buildFrames(kLadder)[0];
    EXPECT_EQ(buildFrames(kLadder + "AdvancedLadderDepthFactor = 100\n")[0].height(), 80);
    EXPECT_EQ(buildFrames(kLadder + "AdvancedLadderDepthFactor = 4294967295\n")[0].height(), 240); // 300 %
    EXPECT_NE(buildFrames(kLadder + "MainLadderSeed = 9000\n")[0].bitmap, plain.bitmap);
    const struct {
        const char* setting;
        int x, y;
    } cases[] = {{"BlueColor", 1, 1}, {"BaseColor", 40, 150}, {"ElectrodeColor", 10, 30}};
    for (const auto& row : cases) {
        const Frame changed = buildFrames(kLadder + "MainLadder" + row.setting + " = 65280\n")[0];
        int green = 0;
        for (int x = row.x; x < row.x + 4; ++x)
            green = std::max(green, GetGValue(changed.colour(x, row.y)) - GetRValue(changed.colour(x, row.y)));
        EXPECT_GT(green, 60) << row.setting;
    }
}

TEST(Arcs, EndsOfRangesBuild) {
    for (const std::string& settings :
         {kPlasma + "MainArclightSize = 48\nMainArclightFrames = 8\nMainArclightEnergy = 1\nMainAntialias = 0\n",
          kPlasma + "MainArclightSize = 999\nMainArclightFrames = 0\nMainArclightEnergy = 99\nMainArclightSeed = 0\n",
          kLadder + "MainLadderSize = 0\nMainLadderFrames = 8\nMainLadderEnergy = 0\nMainAntialias = 0\n",
          kLadder + "MainLadderSize = 256\nMainLadderFrames = 8\nMainLadderEnergy = 16\nMainLadderComplexity = 8\n"})
        EXPECT_EQ(buildFrames(settings).size(), 8u) << settings;
}

} // namespace
