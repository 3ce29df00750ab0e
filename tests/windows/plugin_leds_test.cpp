// Pictures of the digital VU meters and of the audio spectrum, measured in true-colour frames: how far LEDs are lit for
// a sound of known levels, which channel and band is where, sizes, backgrounds, alpha, delays. The sound is written
// into a temporary file.
#include "object_count.h"
#include "recording_host.h"
#include "sound_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
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

// 8 bits, 100 pairs a frame; the right channel has the levels in reverse.
std::string levelSound() {
    std::string samples;
    for (int i = 0; i < kFrames; ++i)
        for (int pair = 0; pair < 100; ++pair)
            samples += {static_cast<char>(127 + kLevels[i] / 2), static_cast<char>(127 + kLevels[kFrames - 1 - i] / 2)};
    return stereoSound(1000, 8, samples);
}

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

// `settings` are "Key = value" without the instrument's part of the key, or whole ones that begin with a star.
Recording build(const Meter& meter, const std::string& sound, const std::vector<std::string>& settings) {
    char folder[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    const std::string path = std::string(folder) + "veldran-leds-test.wav";
    std::ofstream(path, std::ios::binary) << sound;
    Session session;
    session.settings = "MainEffect = " + std::to_string(meter.effect) + "\nTruecolour = 1\nMainDelay = 7\n";
    std::vector<std::string> lines = {"Sound = " + path,
                                      "Frames = " + std::to_string(kFrames),
                                      "BlackColor = " + std::to_string(kPanel),
                                      "GreenColor = 51200",
                                      "YellowColor = 51200",
                                      "RedColor = 51200",
                                      "LEDs = 40",
                                      "LedWide = 6",
                                      "LedDeep = 6",
                                      "Padsize = 9",
                                      "ShowDarkLED = 0",
                                      "Scale = 0",
                                      "Labels = 0",
                                      "Etched = 0",
                                      "Normalize = 0"};
    lines.insert(lines.end(), settings.begin(), settings.end());
    for (const std::string& line : lines)
        *session.settings += (line[0] == '*' ? line.substr(1) : meter.key + line) + "\n";
    session.steps.push_back(pressing(kBuild));
    Recording seen = run(session);
    DeleteFileA(path.c_str());
    EXPECT_TRUE(seen.faults.empty());
    return seen;
}

// How many LEDs are lit along the line `across` of a frame, from the end at which they begin without a break.
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
        for (const char* antialias : {"*MainAntialias = 1", "*MainAntialias = 0"})
            for (const char* retro : {"Retro = 0", "Retro = 1", "Retro = 2"}) {
                SCOPED_TRACE(row.meter.key + antialias + retro);
                const Recording seen = build(row.meter, levelSound(), {antialias, retro, "MatchTime = 0"});
                ASSERT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
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
        const Recording seen = build(kVertical, levelSound(), {"Channels = " + std::to_string(channels)});
        ASSERT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
        EXPECT_EQ(seen.frames[1].width(), 2 * 9 + 12);
        EXPECT_NEAR(litAlong(seen.frames[1], kVertical, 15), level * 40 / 255.0, 0.5) << channels;
        EXPECT_EQ(seen.frames[1].info.delay, 10u); // 500 ms on 5 frames, in hundredths
    }
}

// Columns of 6 and 2 between them, ten a channel.
TEST(LedMeters, TonesLightTheirBands) {
    for (const auto& [left, right] : {std::pair{0, 5}, {3, 8}}) {
        const double centres[] = {31, 62, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
        const Recording seen = build(kSpectrum, toneSound(centres[left], centres[right]), {"Normalize = 1"});
        ASSERT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
        const Frame& frame = seen.frames[2];
        const int half = (frame.width() - 6) / 2 + 6 - 9; // from bank to bank
        for (const auto& [bank, loudest] : {std::pair{0, left}, {1, right}})
            for (int column = 0; column < 10; ++column) {
                const int lit = litAlong(frame, kSpectrum, 9 + bank * half + 3 + column * 8 + 3);
                EXPECT_EQ(lit == 40, column == loudest) << bank << ' ' << column << ' ' << lit;
                EXPECT_TRUE(lit < 30 || column == loudest) << bank << ' ' << column << ' ' << lit;
            }
    }
}

TEST(LedMeters, LightDiesAwayWithinAFrame) {
    for (const char* incandescent : {"Incandescent = 0", "Incandescent = 1"}) {
        const Recording seen = build(kVertical, levelSound(), {incandescent});
        ASSERT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
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
            const Recording seen = build(meter, levelSound(), settings);
            EXPECT_EQ(seen.frames.size(), static_cast<std::size_t>(kFrames));
            return seen.frames.at(0);
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
        EXPECT_GT(solid(frameWith({"Scale = 1"})), solid(bare) + 40);
        EXPECT_GT(solid(frameWith({"Labels = 1"})), solid(bare) + 40);
        EXPECT_EQ(solid(frameWith({"Labels = 1", "*LabelLeft =", "*LabelRight ="})) > solid(bare),
                  meter.effect == kSpectrum.effect); // bands have their names
    }
}

TEST(LedMeters, SoundThatCannotBeMeasuredEndsTheBuild) {
    for (const Meter& meter : {kVertical, kHorizontal, kSpectrum}) {
        const Recording seen = build(meter, "RIFF", {});
        EXPECT_TRUE(seen.frames.empty());
        ASSERT_EQ(seen.boxes.size(), 1u);
        EXPECT_NE(seen.boxes[0].find("Memory error"), std::string::npos) << seen.boxes[0];
    }
}

// The smallest thing that could be lost, a strip of LEDs, has 40000 bytes.
TEST(LedMeters, NothingIsLeftOver) {
    const auto buildAll = [] {
        for (const Meter& meter : {kVertical, kHorizontal, kSpectrum})
            build(meter, levelSound(), {"*MainAlphaTrans = 1", "Scale = 1", "Labels = 1", "LEDs = 128"});
    };
    buildAll(); // fonts, classes and caches that the system keeps
    const object_count::Growth growth = object_count::leastGrowth(2, 1, buildAll);
    EXPECT_LE(growth.drawing, 0);
    EXPECT_LT(growth.heap, 30000);
}

} // namespace
