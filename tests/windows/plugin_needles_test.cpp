// The pictures of the analog VU meters, measured in true-colour frames: which
// way needles point for a sound of known levels, which channel is where, lamps,
// sizes, outlines and delays. The sound is written into a temporary file.
#include "built_frames.h"
#include "sound_bytes.h"

#include <array>
#include <cmath>
#include <numbers>

namespace {

using namespace recording;

constexpr int kLevels[] = {0, 64, 128, 180, 226, 230, 254};
constexpr int kFrames = std::size(kLevels);

// What is measured of a meter at size 256, where two pixels of its artwork make
// one of the frame.
struct Meter {
    int effect;
    std::string settings;
    int side;
    double pivotX;
    double pivotY;
    double degrees;
    int top; // rows between title and cover: left of the lamp only the needle is
             // dark there
    int bottom;
    int lampX;
    int lampY;
};

const Meter kMeters[] = {
    {3, "MainVUAnalogSquare", 256, 128, 209, 40, 146, 168, 216, 149},
    {4, "MainVUAnalogRound", 288, 144, 212, 44, 160, 182, 226, 161},
};

// `settings` are "Key = value" without the instrument's part of the key, or
// whole ones that begin with a star.
Recording buildMeter(const Meter& meter, const std::vector<std::string>& settings) {
    const TemporaryFile sound("veldran-needles-test.wav", levelSound(kLevels));
    std::string all = line("MainEffect", meter.effect) + "Truecolour = 1\nMainDelay = 7\n" + meter.settings +
                      "Sound = " + sound.path() + "\n" + line(meter.settings + "Size", 256) +
                      line(meter.settings + "Frames", kFrames);
    for (const std::string& setting : settings)
        all += (setting[0] == '*' ? setting.substr(1) : meter.settings + setting) + "\n";
    return build(all);
}

// Clockwise from the top, in the meter whose left side is at `left`; NaN where
// nothing is dark.
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
        const Recording seen =
            buildMeter(meter, {"*MainAlphaTrans = 1", "Normalize = 0", "MatchTime = 0", "Padding = 12"});
        ASSERT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
        for (int i = 0; i < kFrames; ++i) {
            const Frame& frame = seen.frames[static_cast<std::size_t>(i)];
            ASSERT_EQ(frame.width(), 2 * meter.side + 3 * 12);
            ASSERT_EQ(frame.height(), meter.side + 2 * 12);
            ASSERT_EQ(frame.bits(), 32);
            EXPECT_EQ(frame.info.delay, 7u);
            const int levels[] = {kLevels[i], kLevels[kFrames - 1 - i]};
            for (int display = 0; display < 2; ++display) {
                const int left = 12 + display * (meter.side + 12);
                EXPECT_NEAR(needleDegrees(frame, meter, left, 12), meter.degrees * (2 * levels[display] / 255.0 - 1),
                            1.2)
                    << i << ' ' << display;
                EXPECT_EQ(isLit(frame, meter, left, 12), levels[display] >= 228) << i << ' ' << display;
                for (const POINT corner : {POINT{0, 0}, POINT{meter.side - 1, meter.side - 1}}) {
                    EXPECT_EQ(frame.colour(left + corner.x, 12 + corner.y),
                              0x7F7F7Fu); // what stands behind alpha
                    EXPECT_EQ(frame.alpha(left + corner.x, 12 + corner.y), 0);
                }
                const int middle = 12 + meter.side / 2;
                EXPECT_EQ(frame.alpha(left - 1, middle) + frame.alpha(left + meter.side, middle), 0);
                EXPECT_EQ(frame.alpha(left + 1, middle) + frame.alpha(left + meter.side - 2, middle), 2 * 255);
            }
        }
    }
}

TEST(NeedleMeters, OneChannelIsOneMeterWithItsLevels) {
    const Meter& meter = kMeters[0];
    const std::array<int, 3> firstAndThird[] = {{1, 0, 128}, {2, 254, 226}, {3, 127, 177}}; // left, right, both halved
    for (const auto& [channels, first, third] : firstAndThird) {
        const Recording seen =
            buildMeter(meter, {"Channels = " + std::to_string(channels), "Normalize = 0", "UsePadding = 0"});
        ASSERT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
        ASSERT_EQ(seen.frames[0].width(), meter.side);
        EXPECT_NEAR(needleDegrees(seen.frames[0], meter, 0, 0), 40 * (2 * first / 255.0 - 1), 1.2) << channels;
        EXPECT_NEAR(needleDegrees(seen.frames[2], meter, 0, 0), 40 * (2 * third / 255.0 - 1), 1.2) << channels;
        EXPECT_EQ(seen.frames[0].info.delay,
                  10u); // 700 ms on 7 frames, in hundredths
    }
}

} // namespace
