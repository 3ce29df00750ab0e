// Alien overflight, measured in true-colour frames: the loop's seam, seeds, ports, curves, scale, transparency.
#include "built_frames.h"

namespace {

using namespace recording;

const std::string kFlight = "MainEffect = 0\nTruecolour = 1\nMainPlasmaFrames = 8\nMainPlasmaSize = 96\n";

TEST(AlienOverflight, TheSeamIsAStepLikeTheOthersAndSeedsRepeat) {
    const std::vector<Frame> frames = buildFrames(kFlight + "MainPlasmaFrames = 32\n");
    ASSERT_EQ(frames.size(), 32u);
    EXPECT_TRUE(frames[0].width() == 96 && frames[0].height() == 96);
    const long step = largestStep(frames);
    EXPECT_GT(step, 0);
    EXPECT_LE(difference(frames.back(), frames.front()), step);
    const Frame plain = buildFrames(kFlight)[3];
    EXPECT_EQ(buildFrames(kFlight)[3].bitmap, plain.bitmap);
    for (const char* other : {"MainPlasmaSeed = 1000\n", "MainPlasmaTerrain = 10\n"})
        EXPECT_GT(difference(buildFrames(kFlight + other)[3], plain), 96 * 96 * 3 * 2) << other;
}

TEST(AlienOverflight, CurvesColourTheLand) {
    const char* keys[] = {"MainPlasmaRed", "MainPlasmaGreen", "MainPlasmaBlue"};
    for (int lit = 0; lit < 3; ++lit) {
        std::string settings = kFlight;
        for (int key = 0; key < 3; ++key)
            settings += std::string(keys[key]) + (key == lit ? " = 33554431\n" : " = 0\n"); // five times 31
        const Frame bright = buildFrames(settings)[0];
        const Frame dark = buildFrames(settings + "MainPlasmaIntensity = 0\n")[0];
        const auto channel = [](const Frame& frame, int which) {
            int sum = 0;
            for (int x = 30; x < 66; ++x)
                sum += static_cast<int>(frame.colour(x, 76) >> 8 * which & 255) / 36;
            return sum;
        };
        EXPECT_GT(channel(bright, lit), channel(bright, (lit + 1) % 3) + 30);
        EXPECT_GT(channel(bright, lit), channel(bright, (lit + 2) % 3) + 30);
        EXPECT_GT(channel(bright, lit), channel(dark, lit) + 30);
    }
}

TEST(AlienOverflight, PortsHaveTheirOutlines) {
    const struct {
        const char* settings;
        bool cornersArePanel;
        bool sidesAreBezel;
    } cases[] = {
        {"", true, true},
        {"MainPlasmaCircular = 1\n", true, true},
        {"MainPlasmaCircular = 1\nMainPlasmaUseBezel = 0\n", true, false},
        {"MainPlasmaUseBezel = 0\n", false, false},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.settings);
        const Frame frame = buildFrames(kFlight +
                                        "MainAlphaTrans = 1\nUseAlphaGreyBack = 0\nMainPlasmaBezelColor = "
                                        "65280\nMainPlasmaPanelColor = 16711935\n" +
                                        row.settings)[0];
        for (const int x : {0, 95})
            for (const int y : {0, 95}) {
                EXPECT_EQ((frame.colour(x, y) & 0xFFFFFF) == 0xFF00FF, row.cornersArePanel);
                EXPECT_EQ(frame.alpha(x, y), row.cornersArePanel ? 0 : 255);
            }
        const COLORREF side = frame.colour(7, 48); // of a frame 16 pixels wide
        EXPECT_EQ(GetGValue(side) > GetRValue(side) + 100, row.sidesAreBezel);
        EXPECT_EQ(frame.alpha(7, 48), 255);
    }
}

TEST(AlienOverflight, ScaleLiesOverTheView) {
    const Frame frame = buildFrames(kFlight + "MainPlasmaScaleColor = 65280\nMainPlasmaUseScale = 1\n")[0];
    int axis = 0;
    for (int y = 20; y < 76; ++y)
        axis += frame.colour(47, y) == 0x00FF00 || frame.colour(48, y) == 0x00FF00;
    EXPECT_EQ(axis, 56);
}

TEST(AlienOverflight, EndsOfRangesBuild) {
    for (const char* settings :
         {"MainPlasmaSize = 64\nMainPlasmaSeed = 32760\nMainPlasmaTerrain = 1\nMainPlasmaBezelSize = 32\n"
          "MainPlasmaCircular = 1\nMainPlasmaUseScale = 1\n",
          "MainPlasmaSize = 9999\nMainPlasmaFrames = 0\nMainPlasmaSeed = 0\nMainPlasmaTerrain = 99\n"
          "MainAntialias = 0\nMainPlasmaRed = 4294967295\n"})
        EXPECT_EQ(buildFrames(kFlight + settings).size(), 8u) << settings;
}

} // namespace
