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
    const std::string scenery = kPlasma + "MainArclightBlueColor = 65280\nMainArclightTubeColor = 16711680\n"
                                          "MainArclightCapColor = 255\nMainArclightElectrodeColor = 65535\n"
                                          "MainArclightPanelColor = 16711935\n";
    const std::string dark = "MainArclightWhiteColor = 0\nMainArclightGlareColor = 0\n";
    const Frame plain = buildFrames(scenery + dark)[0];
    EXPECT_EQ(plain.colour(54, 30), RGB(0, 255, 0));
    EXPECT_EQ(plain.colour(54, 1), RGB(255, 0, 255));
    EXPECT_GT(GetBValue(plain.colour(54, 6)), 60); // the wall
    EXPECT_TRUE(GetRValue(plain.colour(8, 20)) > 150 && GetGValue(plain.colour(8, 20)) < 100);
    const COLORREF rod = plain.colour(18, 25);
    EXPECT_TRUE(GetRValue(rod) > 150 && GetGValue(rod) > 150 && GetBValue(rod) < 150) << rod;
    EXPECT_EQ(buildFrames(scenery + dark + "MainArclightShowTube = 0\n")[0].colour(54, 6), RGB(0, 255, 0));
    for (const char* light : {"MainArclightWhiteColor = 255\n", "MainArclightGlareColor = 255\n"})
        EXPECT_GT(brightness(buildFrames(scenery + dark + light)[0]), brightness(plain) + 5000) << light;
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
    EXPECT_NE(buildFrames(kLadder + "MainLadderSeed = 9000\n")[0].bitmap, frames[0].bitmap);
}

TEST(JacobsLadder, DepthAndColoursShow) {
    EXPECT_EQ(buildFrames(kLadder + "AdvancedLadderDepthFactor = 100\n")[0].height(), 80);
    EXPECT_EQ(buildFrames(kLadder + "AdvancedLadderDepthFactor = 4294967295\n")[0].height(), 240); // 300 %
    const Frame frame = buildFrames(kLadder + "MainLadderBlueColor = 0\nMainLadderBaseColor = 65280\n"
                                              "MainLadderElectrodeColor = 255\nMainLadderWhiteColor = 16711680\n")[0];
    EXPECT_EQ(frame.colour(1, 1), 0u);
    EXPECT_GT(GetGValue(frame.colour(40, 150)), GetRValue(frame.colour(40, 150)) + 60);
    int red = 0;
    int blue = 0;
    for (int x = 0; x < 80; ++x) {
        red = std::max(red, GetRValue(frame.colour(x, 40)) - GetGValue(frame.colour(x, 40)));
        for (int y = 0; y < 130; ++y)
            blue = std::max(blue, GetBValue(frame.colour(x, y)) - GetGValue(frame.colour(x, y)));
    }
    EXPECT_TRUE(red > 60 && blue > 150) << red << ' ' << blue;
}

TEST(Arcs, EndsOfRangesBuild) {
    for (const std::string& settings :
         {kPlasma + "MainArclightSize = 999\nMainArclightFrames = 0\nMainArclightEnergy = 99\nMainArclightSeed = 0\n",
          kLadder + "MainLadderSize = 0\nMainLadderFrames = 8\nMainLadderEnergy = 0\nMainAntialias = 0\n"})
        EXPECT_EQ(buildFrames(settings).size(), 8u) << settings;
}

} // namespace
