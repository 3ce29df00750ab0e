// The pictures of the magic eye, measured in true-colour frames: which channel
// is where, sizes, colours, outlines and delays.
#include "built_frames.h"
#include "sound_bytes.h"

#include <cmath>
#include <numbers>

namespace {

using namespace recording;

constexpr int kLevels[] = {0, 80, 160, 254}; // of the left channel; the right one has them in reverse
constexpr int kFrames = std::size(kLevels);
constexpr int kSize = 160;

Recording buildEye(const std::string& settings) {
    const TemporaryFile sound("veldran-eye-test.wav", levelSound(kLevels));
    Recording seen = build("MainEffect = 13\nTruecolour = 1\nMainDelay = 7\nMainMagicEyeSize = 160\n"
                           "MainMagicEyeFrames = 4\nMainMagicEyeNormalize = 0\nMainMagicEyeSound "
                           "= " +
                           sound.path() + "\n" + settings);
    EXPECT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
    return seen;
}

// Degrees of the cone without light, in the tube whose square begins at (left,
// top), against those for a level: silence leaves 100, and 220 of 255 close the
// shadow.
void expectShadow(const Frame& frame, int left, int top, int level) {
    int dark = 0;
    for (int degrees = -90; degrees < 90; ++degrees) {
        const double angle = degrees * std::numbers::pi / 180;
        dark += GetGValue(frame.colour(left + static_cast<int>(kSize * (0.5 + 0.26 * std::sin(angle))),
                                       top + static_cast<int>(kSize * (0.5 + 0.26 * std::cos(angle))))) < 110;
    }
    EXPECT_NEAR(dark, std::max(100 - level * 116 / 255.0, 0.0), 4) << level;
}

TEST(MagicEye, EachTubeFollowsItsChannelAndIsCutOut) {
    for (const char* smooth : {"MainAntialias = 1\n", "MainAntialias = 0\n"}) {
        const Recording seen = buildEye(std::string(smooth) + "MainAlphaTrans = 1\nMainMagicEyeMatchTime "
                                                              "= 0\nMainMagicEyePadding = 12\n");
        for (int i = 0; i < static_cast<int>(seen.frames.size()); ++i) {
            const Frame& frame = seen.frames[static_cast<std::size_t>(i)];
            ASSERT_EQ(frame.width(), 2 * kSize + 3 * 12);
            ASSERT_EQ(frame.height(), kSize + 2 * 12);
            ASSERT_EQ(frame.bits(), 32);
            EXPECT_EQ(frame.info.delay, 7u);
            for (const int left : {12, 24 + kSize}) {
                expectShadow(frame, left, 12, kLevels[left == 12 ? i : kFrames - 1 - i]);
                EXPECT_EQ(frame.colour(left, 12),
                          0x7F7F7Fu); // what stands behind alpha
                EXPECT_EQ(frame.alpha(left, 12), 0);
                EXPECT_EQ(frame.alpha(left - 1, 12 + kSize / 2), 0);
                EXPECT_EQ(frame.alpha(left + 1, 12 + kSize / 2), 255);
            }
        }
    }
}

TEST(MagicEye, OneChannelIsOneTubeInTheColoursGiven) {
    const Recording seen = buildEye("MainMagicEyeUsePadding = 0\nMainMagicEyeGreenColor = 16777215\n"
                                    "MainMagicEyeBlackColor = 255\nMainMagicEyeChannels = 2\n");
    for (int i = 0; i < static_cast<int>(seen.frames.size()); ++i) {
        const Frame& frame = seen.frames[static_cast<std::size_t>(i)];
        ASSERT_EQ(frame.width(), kSize);
        EXPECT_EQ(frame.info.delay, 10u); // 400 ms on 4 frames, in hundredths
        expectShadow(frame, 0, 0, kLevels[kFrames - 1 - i]);
        EXPECT_EQ(frame.colour(0, 0), 255u);
        EXPECT_GT(GetRValue(frame.colour(kSize / 2, kSize / 4)), 200);
    }
}

} // namespace
