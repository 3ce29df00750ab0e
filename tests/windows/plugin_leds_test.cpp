// Pictures of the digital VU meters and of the audio spectrum, measured in
// true-colour frames: how far LEDs are lit for a sound of known levels, which
// channel and band is where, sizes, backgrounds, alpha, delays. The sound is
// written into a temporary file.
#include "built_frames.h"
#include "sound_bytes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using namespace recording;

constexpr int kLevels[] = {0, 64, 128, 190, 254};
constexpr int kFrames = std::size(kLevels);
constexpr COLORREF kPanel = 0x402000;

struct Meter {
    int effect;
    std::string key;
    bool upright;
};
const Meter kVertical = {9, "MainVUDigVert", true};
const Meter kHorizontal = {8, "MainVUDigHorz", false};
const Meter kSpectrum = {2, "MainSpectrum", true};

// A second of a tone on either channel.
std::string toneSound(double left, double right) {
    std::string samples;
    for (int i = 0; i < 44100; ++i)
        for (const double hertz : {left, right}) {
            const int value = static_cast<int>(30000 * std::sin(2 * std::numbers::pi * hertz * i / 44100));
            samples += {static_cast<char>(value & 255), static_cast<char>(value >> 8 & 255)};
        }
    return stereoSound(44100, 16, samples);
}

// `settings` are "Key = value" without the instrument's part of the key, or
// whole ones that begin with a star.
Recording buildMeter(const Meter& meter, const std::vector<std::string>& settings,
                     const std::string& bytes = levelSound(kLevels)) {
    const TemporaryFile sound("veldran-leds-test.wav", bytes);
    std::string all = line("MainEffect", meter.effect) + "Truecolour = 1\nMainDelay = 7\n" +
                      line(meter.key + "Frames", kFrames) + line(meter.key + "BlackColor", kPanel) + meter.key +
                      "Sound = " + sound.path() + "\n";
    for (const char* colour : {"GreenColor", "YellowColor", "RedColor"})
        all += line(meter.key + colour, 51200);
    std::vector<std::string> lines = {"LEDs = 40", "LedWide = 6", "LedDeep = 6", "Padsize = 9",  "ShowDarkLED = 0",
                                      "Scale = 0", "Labels = 0",  "Etched = 0",  "Normalize = 0"};
    lines.insert(lines.end(), settings.begin(), settings.end());
    for (const std::string& setting : lines)
        all += (setting[0] == '*' ? setting.substr(1) : meter.key + setting) + "\n";
    Recording seen = build(all);
    EXPECT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
    return seen;
}

// How many LEDs are lit along the line `across` of a frame, from the end at
// which they begin without a break.
int litAlong(const Frame& frame, const Meter& meter, int across) {
    const int length = meter.upright ? frame.height() : frame.width();
    int runs = 0;
    bool before = false;
    for (int i = 0; i < length; ++i) {
        const COLORREF colour = meter.upright ? frame.colour(across, length - 1 - i) : frame.colour(i, across);
        const bool lit = GetGValue(colour) > 150;
        runs += lit && !before;
        before = lit;
    }
    return runs;
}

// Padding 9, edges 3 or 2, LEDs of 6 and the space between channels of 6.
TEST(LedMeters, LitPartFollowsTheChannels) {
    const struct {
        const Meter& meter;
        int edge;
        int first; // across, to the middle of the first bar
        int width;
        int height;
    } cases[] = {{kVertical, 3, 9 + 3 + 3, 2 * 9 + 2 * 12 + 6, 2 * 9 + 2 * 2 + 40 * 7 - 1},
                 {kHorizontal, 2, 9 + 2 + 3, 2 * 9 + 2 * 3 + 40 * 8 - 2, 2 * 9 + 2 * 10 + 6}};
    for (const auto& row : cases)
        for (const char* look : {"*MainAntialias = 1\n", "*MainAntialias = 0\n"}) {
            SCOPED_TRACE(row.meter.key + look);
            const Recording seen =
                buildMeter(row.meter, {look, row.meter.upright ? "Retro = 1" : "Retro = 2", "MatchTime = 0"});
            for (int i = 0; i < kFrames; ++i) {
                const Frame& frame = seen.frames[static_cast<std::size_t>(i)];
                ASSERT_EQ(frame.width(), row.width);
                ASSERT_EQ(frame.height(), row.height);
                EXPECT_EQ(frame.info.delay, 7u);
                EXPECT_EQ(frame.colour(8, 8), kPanel);
                EXPECT_NEAR(litAlong(frame, row.meter, row.first), kLevels[i] * 40 / 255.0, 0.5);
                EXPECT_NEAR(litAlong(frame, row.meter, row.first + 6 + 2 * row.edge + 6),
                            kLevels[kFrames - 1 - i] * 40 / 255.0, 0.5);
            }
        }
    for (const auto& [channels, level] : {std::pair{1, 64}, {2, 190}, {3, 127}}) {
        const Recording seen = buildMeter(kVertical, {"Channels = " + std::to_string(channels)});
        EXPECT_EQ(seen.frames[1].width(), 2 * 9 + 12);
        EXPECT_NEAR(litAlong(seen.frames[1], kVertical, 15), level * 40 / 255.0, 0.5) << channels;
        EXPECT_EQ(seen.frames[1].info.delay,
                  10u); // 500 ms on 5 frames, in hundredths
    }
}

// Columns of 6 and 2 between them, ten a channel.
TEST(LedMeters, TonesLightTheirBands) {
    const Frame frame = buildMeter(kSpectrum, {"Normalize = 1"}, toneSound(250, 8000)).frames.at(2);
    const int half = (frame.width() - 6) / 2 + 6 - 9; // from bank to bank
    for (const auto& [bank, loudest] : {std::pair{0, 3}, {1, 8}})
        for (int column = 0; column < 10; ++column) {
            const int lit = litAlong(frame, kSpectrum, 9 + bank * half + 3 + column * 8 + 3);
            EXPECT_TRUE(column == loudest ? lit == 40 : lit < 30) << bank << ' ' << column << ' ' << lit;
        }
}

TEST(LedMeters, LightDiesAwayWithinAFrame) {
    for (const char* incandescent : {"Incandescent = 0", "Incandescent = 1"}) {
        const Recording seen = buildMeter(kVertical, {incandescent});
        // The top LED of the right channel is lit in the first frame alone.
        const auto top = [&](std::size_t i) { return GetGValue(seen.frames[i].colour(33, 9 + 2 + 3)); };
        EXPECT_GT(top(0), 180);
        EXPECT_EQ(top(1) > 60, incandescent[15] == '1') << top(1);
        EXPECT_LT(top(1), 150);
        EXPECT_EQ(top(2), GetGValue(kPanel));
    }
}

TEST(LedMeters, BordersScaleAndLabelsAreSolidAndThePanelIsNot) {
    for (const Meter& meter : {kVertical, kHorizontal, kSpectrum}) {
        SCOPED_TRACE(meter.key);
        const auto frameWith = [&](std::vector<std::string> settings) {
            settings.insert(settings.end(), {"*MainAlphaTrans = 1", "*UseAlphaGreyBack = 0"});
            return buildMeter(meter, settings).frames.at(0);
        };
        const auto solid = [](const Frame& frame) {
            int count = 0;
            for (int at = 0; at < frame.width() * frame.height(); ++at)
                count += frame.alpha(at % frame.width(), at / frame.width()) > 127;
            return count;
        };
        const Frame bare = frameWith({});
        const Frame etched = frameWith({"Etched = 1", "Etchsize = 3"});
        ASSERT_EQ(bare.bits(), 32);
        EXPECT_EQ(etched.width(), bare.width() + 2 * 2 * 3 - (meter.upright ? 0 : 6));
        EXPECT_EQ(etched.height(), bare.height() + 2 * 2 * 3 - (meter.upright ? 6 : 0));
        EXPECT_EQ(etched.alpha(8, 8), 0);
        EXPECT_EQ(etched.alpha(9, 9), 255);
        // 66 and 266 per cent of the panel's channels, cut.
        EXPECT_EQ(etched.colour(10, 10), 0x2A1500u);
        EXPECT_EQ(etched.colour(etched.width() - 11, etched.height() - 11), 0xAA5500u);
        EXPECT_EQ(solid(bare), (bare.width() - 18) * (bare.height() - 18) -
                                   6 * (meter.upright ? bare.height() - 18 : bare.width() - 18));
        const int named = solid(frameWith({"Labels = 1"}));
        EXPECT_GT(named, solid(bare) + 40);
        EXPECT_GT(solid(frameWith({"Labels = 1", "Scale = 1"})), named + 40);
    }
}

} // namespace
