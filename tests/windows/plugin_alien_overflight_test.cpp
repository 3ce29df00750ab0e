// Alien overflight, measured in true-colour frames: the loop's seam, seeds, ports, curves, scale, transparency.
#include "built_frames.h"

#include <array>

namespace {

using namespace recording;

constexpr char kFlight[] = "*Truecolour=1 Frames=8 Size=96";

TEST(AlienOverflight, TheSeamIsAStepLikeTheOthersAndSeedsRepeat) {
    withBuilder("MainPlasma", kFlight, [](Builder& flight) {
        const std::vector<Frame> frames = flight.frames("Frames=32");
        ASSERT_EQ(frames.size(), 32u);
        EXPECT_TRUE(frames[0].width() == 96 && frames[0].height() == 96);
        expectLoop(frames, 1);
        const Frame plain = flight.frame("", 3);
        EXPECT_EQ(flight.frame("", 3).bitmap, plain.bitmap);
        for (const char* other : {"Seed=1000", "Terrain=10"})
            EXPECT_GT(difference(flight.frame(other, 3), plain), 96 * 96 * 3 * 2) << other;
        // Beyond the ranges.
        EXPECT_EQ(flight.frames("Size=9999 Frames=0 Seed=0 Terrain=99 *MainAntialias=0 Red=4294967295").size(), 8u);
    });
}

TEST(AlienOverflight, CurvesColourTheLand) {
    withBuilder("MainPlasma", kFlight, [](Builder& flight) {
        const auto channels = [&](const std::string& settings) {
            const Frame frame = flight.frame(settings);
            std::array<int, 3> sums{};
            for (int x = 30; x < 66; ++x)
                for (std::size_t c = 0; c < 3; ++c)
                    sums[c] += static_cast<int>(frame.colour(x, 76) >> 8 * c & 255) / 36;
            return sums;
        };
        const char* const lit[] = {"Red=33554431 Green=0 Blue=0", "Red=0 Green=33554431 Blue=0",
                                   "Red=0 Green=0 Blue=33554431"}; // five times 31
        for (std::size_t c = 0; c < 3; ++c) {
            const std::array<int, 3> seen = channels(lit[c]);
            EXPECT_GT(seen[c], std::max(seen[(c + 1) % 3], seen[(c + 2) % 3]) + 30) << c;
        }
        EXPECT_GT(channels("")[1], channels("Intensity=0")[1] + 30);
    });
}

TEST(AlienOverflight, PortsHaveTheirOutlines) {
    const struct {
        const char* settings;
        bool cornersArePanel, sidesAreBezel;
    } cases[] = {{"", true, true}, {"Circular=1 UseBezel=0", true, false}, {"UseBezel=0", false, false}};
    const std::string colours = " UseScale=1 ScaleColor=#00FFFF BezelColor=#00FF00 PanelColor=#FF00FF";
    withBuilder("MainPlasma", kFlight + colours + " *MainAlphaTrans=1 *UseAlphaGreyBack=0", [&](Builder& flight) {
        for (const auto& row : cases) {
            SCOPED_TRACE(row.settings);
            const Frame frame = flight.frame(row.settings);
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
    });
}

} // namespace
