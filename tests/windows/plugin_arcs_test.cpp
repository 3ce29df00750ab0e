// Plasma arc and Jacob's ladder, measured in true-colour frames: sizes, loops, colours and where light may fall.
#include "built_frames.h"

namespace {

using namespace recording;

constexpr char kPlasma[] = "*Truecolour=1 Frames=12";
constexpr char kDark[] = " WhiteColor=0 GlareColor=0"; // scenery without light

double brightness(const Frame& frame) {
    return std::accumulate(frame.bitmap.begin() + 40, frame.bitmap.end(), 0.0);
}

TEST(PlasmaArc, LoopsRepeatsAndKeepsWithinItsRanges) {
    withBuilder("MainArclight", kPlasma, [](Builder& arc) {
        const std::vector<Frame> frames = arc.frames("");
        ASSERT_EQ(frames.size(), 12u);
        EXPECT_TRUE(frames[0].width() == 108 && frames[0].height() == 50); // 46 % of the length, rounded
        expectLoop(frames);
        EXPECT_EQ(arc.frame("", 7).bitmap, frames[7].bitmap);
        EXPECT_NE(arc.frame("Seed=11260", 7).bitmap, frames[7].bitmap);
        EXPECT_EQ(arc.frames("Size=999 Frames=0 Energy=99 Seed=0").size(), 8u);
    });
}

TEST(PlasmaArc, AfterImagesAddTheLastTwoFrames) {
    // So dim that hardly any channel ends at 255.
    withBuilder("MainArclight", kPlasma, [](Builder& arc) {
        const std::string dim = "Energy=1 WhiteColor=#202020 GlareColor=#000030";
        const std::vector<Frame> with = arc.frames(dim);
        const std::vector<Frame> without = arc.frames(dim + " AfterImage=0");
        const double dark = brightness(arc.frame(kDark));
        const auto light = [&](std::size_t i) { return brightness(without[i % 12]) - dark; };
        for (const std::size_t i : {0u, 1u, 6u}) {
            const double expected = light(i) + 0.4 * light(i + 11) + 0.3 * light(i + 10);
            EXPECT_NEAR(brightness(with[i]) - dark, expected, expected / 20) << i;
        }
    });
}

TEST(PlasmaArc, EveryColourHasItsPlace) {
    const std::string colours = " BlueColor=#00FF00 TubeColor=#0000FF CapColor=#FF0000 ElectrodeColor=#FFFF00";
    withBuilder("MainArclight", kPlasma + colours + " PanelColor=#FF00FF" + kDark, [](Builder& arc) {
        const Frame plain = arc.frame("");
        EXPECT_EQ(plain.colour(54, 30), RGB(0, 255, 0));
        EXPECT_EQ(plain.colour(54, 1), RGB(255, 0, 255));
        EXPECT_GT(GetBValue(plain.colour(54, 6)), 60); // the wall
        EXPECT_TRUE(GetRValue(plain.colour(8, 20)) > 150 && GetGValue(plain.colour(8, 20)) < 100);
        const COLORREF rod = plain.colour(18, 25);
        EXPECT_TRUE(GetRValue(rod) > 150 && GetGValue(rod) > 150 && GetBValue(rod) < 150) << rod;
        EXPECT_EQ(arc.frame("ShowTube=0").colour(54, 6), RGB(0, 255, 0));
        for (const char* light : {"WhiteColor=#FF0000", "GlareColor=#FF0000"})
            EXPECT_GT(brightness(arc.frame(light)), brightness(plain) + 5000) << light;
    });
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

TEST(JacobsLadder, ArcClimbsBreaksAndStrikesAgainInItsColours) {
    withBuilder("MainLadder", "*Truecolour=1 Frames=24", [](Builder& ladder) {
        const std::vector<Frame> frames = ladder.frames("");
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
        EXPECT_NE(ladder.frame("Seed=9000").bitmap, frames[0].bitmap);
        EXPECT_EQ(ladder.frames("Size=0 Frames=8 Energy=0 *MainAntialias=0").size(), 8u);

        const Frame frame =
            ladder.frame("BlueColor=0 BaseColor=#00FF00 ElectrodeColor=#FF0000 WhiteColor=#0000FF Frames=8");
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
    });
}

TEST(JacobsLadder, DepthIsAtMostThreeTimesTheWidth) {
    withBuilder("MainLadder", "Frames=8 *AdvancedLadderDepthFactor=4294967295",
                [](Builder& ladder) { EXPECT_EQ(ladder.frame("").height(), 240); });
}

} // namespace
