// Alien overflight, measured in true-colour frames: the loop's seam, seeds, ports, curves, scale, transparency.
#include "built_frames.h"

#include <array>

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
    constexpr char kFull[] = " = 33554431\n"; // five times 31
    const auto channels = [](const std::string& settings) {
        const Frame frame = buildFrames(kFlight + settings)[0];
        std::array<int, 3> sums{};
        for (int x = 30; x < 66; ++x)
            for (std::size_t c = 0; c < 3; ++c)
                sums[c] += static_cast<int>(frame.colour(x, 76) >> 8 * c & 255) / 36;
        return sums;
    };
    const std::string keys[] = {"MainPlasmaRed", "MainPlasmaGreen", "MainPlasmaBlue"};
    for (std::size_t lit = 0; lit < 3; ++lit) {
        const std::string none = keys[(lit + 1) % 3] + " = 0\n" + keys[(lit + 2) % 3] + " = 0\n";
        const std::array<int, 3> seen = channels(keys[lit] + kFull + none);
        EXPECT_GT(seen[lit], std::max(seen[(lit + 1) % 3], seen[(lit + 2) % 3]) + 30) << lit;
    }
    EXPECT_GT(channels("")[1], channels("MainPlasmaIntensity = 0\n")[1] + 30);
}

TEST(AlienOverflight, PortsHaveTheirOutlines) {
    const struct {
        const char* settings;
        bool cornersArePanel;
        bool sidesAreBezel;
    } cases[] = {
        {"", true, true},
        {"MainPlasmaCircular = 1\nMainPlasmaUseBezel = 0\n", true, false},
        {"MainPlasmaUseBezel = 0\n", false, false},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.settings);
        const Frame frame = buildFrames(kFlight +
                                        "MainAlphaTrans = 1\nUseAlphaGreyBack = 0\nMainPlasmaUseScale = 1\n"
                                        "MainPlasmaScaleColor = 16776960\nMainPlasmaBezelColor = 65280\n"
                                        "MainPlasmaPanelColor = 16711935\n" +
                                        row.settings)[0];
        int axis = 0;
        for (int y = 20; y < 76; ++y)
            axis += (frame.colour(47, y) & 0xFFFFFF) == 0xFFFF00 || (frame.colour(48, y) & 0xFFFFFF) == 0xFFFF00;
        EXPECT_EQ(axis, 56);
        for (const int x : {0, 95})
            for (const int y : {0, 95}) {
                EXPECT_EQ((frame.colour(x, y) & 0xFFFFFF) == 0xFF00FF, row.cornersArePanel);
                EXPECT_EQ(frame.alpha(x, y), row.cornersArePanel ? 0 : 255);
            }
        const COLORREF side = frame.colour(7, 48); // of a frame 16 pixels wide
        EXPECT_EQ(GetGValue(side) > std::max(GetRValue(side), GetBValue(side)) + 60, row.sidesAreBezel);
        EXPECT_EQ(frame.alpha(7, 48), 255);
    }
}

TEST(AlienOverflight, EndsOfRangesBuild) {
    EXPECT_EQ(buildFrames(kFlight +
                          "MainPlasmaSize = 9999\nMainPlasmaFrames = 0\nMainPlasmaSeed = 0\nMainPlasmaTerrain = 99\n"
                          "MainAntialias = 0\nMainPlasmaRed = 4294967295\n")
                  .size(),
              8u);
}

} // namespace
