// The pictures of the analog VU meters, measured in true-colour frames: which way needles point for a sound of known
// levels, which channel is where, lamps, sizes, outlines and delays. The sound is written into a temporary file.
#include "object_count.h"
#include "recording_host.h"
#include "sound_bytes.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <numbers>

namespace {

using namespace recording;

constexpr int kLevels[] = {0, 64, 128, 180, 226, 230, 254};
constexpr int kFrames = std::size(kLevels);
constexpr int kPairsAFrame = 100;

// What is measured of a meter at size 256, where two pixels of its artwork make one of the frame.
struct Meter {
    int effect;
    std::string settings;
    int side;
    double pivotX;
    double pivotY;
    double degrees;
    int top; // rows between title and cover: left of the lamp only the needle is dark there
    int bottom;
    int lampX;
    int lampY;
    COLORREF panel;
};

const Meter kMeters[] = {
    {3, "MainVUAnalogSquare", 256, 128, 209, 40, 146, 168, 216, 149, 0x606060},
    {4, "MainVUAnalogRound", 288, 144, 212, 44, 160, 182, 226, 161, 0x7F7F7F},
};

// PCM of 8 bits at 1000 pairs a second, a part a frame; the right channel has the levels in reverse.
std::string soundBytes() {
    std::string samples;
    for (int i = 0; i < kFrames; ++i)
        for (int pair = 0; pair < kPairsAFrame; ++pair) {
            samples += static_cast<char>(127 + kLevels[i] / 2);
            samples += static_cast<char>(127 + kLevels[kFrames - 1 - i] / 2);
        }
    return stereoSound(1000, 8, samples);
}

// `settings` are "Key = value" without the instrument's part of the key, or whole ones that begin with a star.
Recording build(const Meter& meter, const std::vector<std::string>& settings, const std::string& sound) {
    char folder[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    const std::string path = std::string(folder) + "veldran-needles-test.wav";
    std::ofstream(path, std::ios::binary) << sound;
    Session session;
    session.settings = "MainEffect = " + std::to_string(meter.effect) + "\nTruecolour = 1\nMainDelay = 7\n" +
                       meter.settings + "Sound = " + path + "\n" + meter.settings + "Size = 256\n" + meter.settings +
                       "Frames = " + std::to_string(kFrames) + "\n";
    for (const std::string& line : settings)
        *session.settings += (line[0] == '*' ? line.substr(1) : meter.settings + line) + "\n";
    session.steps.push_back(pressing(kBuild));
    Recording seen = run(session);
    DeleteFileA(path.c_str());
    EXPECT_TRUE(seen.faults.empty());
    return seen;
}

// Clockwise from the top, in the meter whose left side is at `left`; NaN where nothing is dark.
double needleDegrees(const Frame& frame, const Meter& meter, int left, int top) {
    double right = 0;
    double up = 0;
    for (int y = meter.top; y < meter.bottom; ++y)
        for (int x = 40; x < 200; ++x) {
            if (GetRValue(frame.colour(left + x, top + y)) > 110)
                continue;
            const double dx = x + 0.5 - meter.pivotX;
            const double dy = y + 0.5 - meter.pivotY;
            right += dx;
            up -= dy;
        }
    return up > 0 ? std::atan2(right, up) * 180 / std::numbers::pi : std::nan("");
}

bool isLit(const Frame& frame, const Meter& meter, int left, int top) {
    return GetRValue(frame.colour(left + meter.lampX, top + meter.lampY)) > 200;
}

TEST(NeedleMeters, NeedlesAndLampsFollowTheirChannels) {
    for (const Meter& meter : kMeters) {
        SCOPED_TRACE(meter.settings);
        const Recording seen = build(meter, {"Normalize = 0", "MatchTime = 0", "Padding = 12"}, soundBytes());
        ASSERT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
        for (int i = 0; i < kFrames; ++i) {
            const Frame& frame = seen.frames[static_cast<std::size_t>(i)];
            ASSERT_EQ(frame.width(), 2 * meter.side + 3 * 12);
            ASSERT_EQ(frame.height(), meter.side + 2 * 12);
            EXPECT_EQ(frame.info.delay, 7u);
            const int levels[] = {kLevels[i], kLevels[kFrames - 1 - i]};
            for (int display = 0; display < 2; ++display) {
                const int left = 12 + display * (meter.side + 12);
                EXPECT_NEAR(needleDegrees(frame, meter, left, 12), meter.degrees * (2 * levels[display] / 255.0 - 1),
                            1.2)
                    << i << ' ' << display;
                EXPECT_EQ(isLit(frame, meter, left, 12), levels[display] >= 228) << i << ' ' << display;
                for (const POINT corner : {POINT{0, 0}, POINT{meter.side - 1, meter.side - 1}})
                    EXPECT_EQ(frame.colour(left + corner.x, 12 + corner.y), meter.panel); // beside the outline
            }
        }
    }
}

TEST(NeedleMeters, OneChannelIsOneMeterWithItsLevels) {
    const Meter& meter = kMeters[0];
    const std::array<int, 3> firstAndThird[] = {{1, 0, 128}, {2, 254, 226}, {3, 127, 177}}; // left, right, both halved
    for (const auto& [channels, first, third] : firstAndThird) {
        const Recording seen =
            build(meter, {"Channels = " + std::to_string(channels), "Normalize = 0", "UsePadding = 0"}, soundBytes());
        ASSERT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
        ASSERT_EQ(seen.frames[0].width(), meter.side);
        EXPECT_NEAR(needleDegrees(seen.frames[0], meter, 0, 0), 40 * (2 * first / 255.0 - 1), 1.2) << channels;
        EXPECT_NEAR(needleDegrees(seen.frames[2], meter, 0, 0), 40 * (2 * third / 255.0 - 1), 1.2) << channels;
        EXPECT_EQ(seen.frames[0].info.delay, 10u); // 700 ms on 7 frames, in hundredths
    }
}

TEST(NeedleMeters, AlphaIsTheOutlineOfEveryMeter) {
    for (const Meter& meter : kMeters) {
        const Recording seen = build(meter, {"*MainAlphaTrans = 1", "Padding = 12"}, soundBytes());
        ASSERT_FALSE(seen.frames.empty());
        const Frame& frame = seen.frames[0];
        ASSERT_EQ(frame.bits(), 32);
        const int middle = 12 + meter.side / 2;
        for (int display = 0; display < 2; ++display) {
            const int left = 12 + display * (meter.side + 12);
            EXPECT_EQ(frame.alpha(left - 1, middle), 0);
            EXPECT_EQ(frame.alpha(left + 1, middle), 255);
            EXPECT_EQ(frame.alpha(left + meter.side - 2, middle), 255);
            EXPECT_EQ(frame.alpha(left + meter.side, middle), 0);
            EXPECT_EQ(frame.alpha(left, 12), 0);
        }
    }
}

TEST(NeedleMeters, SoundThatCannotBeMeasuredEndsTheBuild) {
    for (const Meter& meter : kMeters)
        for (const char* sound : {"", "RIFF"}) {
            const Recording seen = build(meter, {}, sound);
            EXPECT_TRUE(seen.frames.empty());
            ASSERT_EQ(seen.boxes.size(), 1u);
            EXPECT_NE(seen.boxes[0].find("Memory error"), std::string::npos) << seen.boxes[0];
        }
}

// The smallest thing that could be lost, a canvas of a meter, has 780000 bytes.
TEST(NeedleMeters, NothingIsLeftOver) {
    const auto buildAll = [] {
        for (const Meter& meter : kMeters)
            build(meter, {"*MainAlphaTrans = 1"}, soundBytes());
    };
    buildAll(); // classes and caches that the system keeps
    const object_count::Growth growth = object_count::leastGrowth(2, 1, buildAll);
    EXPECT_LE(growth.drawing, 0);
    EXPECT_LT(growth.heap, 50000);
}

} // namespace
