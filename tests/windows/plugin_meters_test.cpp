// Meters and the audio spectrum, measured in true-colour frames of a sound of known levels: how far LEDs are lit, which
// way needles point, how wide shadows are; which channel is where, sizes, lamps, outlines, backgrounds, delays.
#include "built_frames.h"
#include "sound_bytes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using namespace recording;

// Of the left channel, a frame each; the right one has them in reverse.
constexpr int kLevels[] = {0, 64, 128, 180, 226, 230, 254};
constexpr int kFrames = std::size(kLevels);
constexpr COLORREF kBehindAlpha = 0x7F7F7F;

int levelOf(int frame, bool right) {
    return kLevels[right ? kFrames - 1 - frame : frame];
}

class Meters : public testing::Test {
protected:
    template <class Body>
    void withMeters(const std::string& words, Body body) {
        withBuilder("MainVUDigVert", "*Truecolour=1 *MainDelay=7 " + words, body);
    }
    std::vector<Frame> frames(Builder& meter, const std::string& words) const {
        std::vector<Frame> seen = meter.frames(words);
        if (seen.size() != static_cast<std::size_t>(kFrames))
            throw std::runtime_error("frames are missing");
        return seen;
    }

    TemporaryFile sound_{"veldran-meters-test.wav", levelSound(kLevels)};
};

struct LedMeter {
    const char* key;
    bool upright;
};
constexpr LedMeter kVertical = {"MainVUDigVert", true};
constexpr LedMeter kHorizontal = {"MainVUDigHorz", false};
constexpr LedMeter kSpectrum = {"MainSpectrum", true};
constexpr char kLeds[] = "Frames=7 LEDs=40 LedWide=6 LedDeep=6 Padsize=9 ShowDarkLED=0 Scale=0 Labels=0 Etched=0 "
                         "Normalize=0 BlackColor=#002040 GreenColor=#00C800 YellowColor=#00C800 RedColor=#00C800 ";
constexpr COLORREF kPanel = 0x402000;

// How many LEDs are lit along the line `across` of a frame, from the end at which they begin without a break.
int litAlong(const Frame& frame, const LedMeter& meter, int across) {
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

// Padding 9, edges 3 or 2, LEDs of 6 and the space between channels of 6.
TEST_F(Meters, LedsFollowTheirChannelsAndTheirLightDiesAway) {
    const struct {
        const LedMeter& meter;
        const char* retro;
        int edge;
        int first; // across, to the middle of the first bar
        int width;
        int height;
    } cases[] = {{kVertical, "Retro=1", 3, 9 + 3 + 3, 2 * 9 + 2 * 12 + 6, 2 * 9 + 2 * 2 + 40 * 7 - 1},
                 {kHorizontal, "Retro=2", 2, 9 + 2 + 3, 2 * 9 + 2 * 3 + 40 * 8 - 2, 2 * 9 + 2 * 10 + 6}};
    withMeters("", [&](Builder& meter) {
        for (const auto& row : cases)
            for (const char* look : {" *MainAntialias=1 MatchTime=0 ", " *MainAntialias=0 MatchTime=0 "}) {
                SCOPED_TRACE(row.meter.key + std::string(look));
                meter.choose(row.meter.key);
                meter.set("Sound", sound_.path());
                const std::vector<Frame> seen = frames(meter, kLeds + std::string(look) + row.retro);
                for (int i = 0; i < kFrames; ++i) {
                    const Frame& frame = seen[static_cast<std::size_t>(i)];
                    ASSERT_TRUE(frame.width() == row.width && frame.height() == row.height);
                    EXPECT_EQ(frame.info.delay, 7u);
                    EXPECT_EQ(frame.colour(8, 8), kPanel);
                    for (const bool right : {false, true})
                        EXPECT_NEAR(litAlong(frame, row.meter, row.first + (right ? 12 + 2 * row.edge : 0)),
                                    levelOf(i, right) * 40 / 255.0, 0.5);
                }
            }
        meter.choose(kVertical.key);
        for (const auto& [channels, level] : {std::pair{"1", 64}, {"2", 230}, {"3", 147}}) {
            const Frame frame = frames(meter, kLeds + std::string("Channels=") + channels)[1];
            EXPECT_EQ(frame.width(), 2 * 9 + 12);
            EXPECT_NEAR(litAlong(frame, kVertical, 15), level * 40 / 255.0, 0.5) << channels;
            EXPECT_EQ(frame.info.delay, 10u); // 700 ms on 7 frames, in hundredths
        }
        for (const bool dying : {false, true}) {
            const std::vector<Frame> seen =
                frames(meter, kLeds + std::string(dying ? "Incandescent=1" : "Incandescent=0"));
            // The top LED of the right channel is lit in the first frame alone.
            const auto top = [&](std::size_t i) { return GetGValue(seen[i].colour(33, 9 + 2 + 3)); };
            EXPECT_GT(top(0), 180);
            EXPECT_EQ(top(1) > 60, dying) << top(1);
            EXPECT_LT(top(1), 150);
            EXPECT_EQ(top(2), GetGValue(kPanel));
        }
    });
}

TEST_F(Meters, TonesLightTheirBandsAndOnlyThePanelIsTransparent) {
    const TemporaryFile tones("veldran-tones-test.wav", toneSound(250, 8000));
    withMeters("*UseAlphaGreyBack=0", [&](Builder& meter) {
        // Columns of 6 and 2 between them, ten a channel.
        meter.choose(kSpectrum.key);
        meter.set("Sound", tones.path());
        const Frame bands = frames(meter, kLeds + std::string("Normalize=1"))[3];
        const int half = (bands.width() - 6) / 2 + 6 - 9; // from bank to bank
        for (const auto& [bank, loudest] : {std::pair{0, 3}, {1, 8}})
            for (int column = 0; column < 10; ++column) {
                const int lit = litAlong(bands, kSpectrum, 9 + bank * half + 3 + column * 8 + 3);
                EXPECT_TRUE(column == loudest ? lit == 40 : lit < 30) << bank << ' ' << column << ' ' << lit;
            }

        for (const LedMeter& row : {kVertical, kHorizontal, kSpectrum}) {
            SCOPED_TRACE(row.key);
            meter.choose(row.key);
            meter.set("Sound", sound_.path());
            const auto frameWith = [&](const char* words) {
                return frames(meter, kLeds + std::string("*MainAlphaTrans=1 ") + words)[0];
            };
            const auto solid = [](const Frame& frame) {
                int count = 0;
                for (int at = 0; at < frame.width() * frame.height(); ++at)
                    count += frame.alpha(at % frame.width(), at / frame.width()) > 127;
                return count;
            };
            const Frame bare = frameWith("");
            const Frame etched = frameWith("Etched=1 Etchsize=3");
            ASSERT_EQ(bare.bits(), 32);
            EXPECT_EQ(etched.width(), bare.width() + 2 * 2 * 3 - (row.upright ? 0 : 6));
            EXPECT_EQ(etched.height(), bare.height() + 2 * 2 * 3 - (row.upright ? 6 : 0));
            EXPECT_EQ(etched.alpha(8, 8), 0);
            EXPECT_EQ(etched.alpha(9, 9), 255);
            // 66 and 266 per cent of the panel's channels, cut.
            EXPECT_EQ(etched.colour(10, 10), 0x2A1500u);
            EXPECT_EQ(etched.colour(etched.width() - 11, etched.height() - 11), 0xAA5500u);
            EXPECT_EQ(solid(bare), (bare.width() - 18) * (bare.height() - 18) -
                                       6 * (row.upright ? bare.height() - 18 : bare.width() - 18));
            const int named = solid(frameWith("Labels=1"));
            EXPECT_GT(named, solid(bare) + 40);
            EXPECT_GT(solid(frameWith("Labels=1 Scale=1")), named + 40);
        }
    });
}

// What is measured of a meter at size 256, where two pixels of its artwork make one of the frame.
struct NeedleMeter {
    const char* key;
    int side;
    double pivotX, pivotY;
    double degrees;
    int top, bottom; // rows between title and cover: left of the lamp only the needle is dark there
    int lampX, lampY;
};
constexpr NeedleMeter kSquare = {"MainVUAnalogSquare", 256, 128, 209, 40, 146, 168, 216, 149};
constexpr NeedleMeter kRound = {"MainVUAnalogRound", 288, 144, 212, 44, 160, 182, 226, 161};

// Clockwise from the top, in the meter whose left side is at `left`; NaN where nothing is dark.
double needleDegrees(const Frame& frame, const NeedleMeter& meter, int left, int top) {
    double right = 0;
    double up = 0;
    for (int y = meter.top; y < meter.bottom; ++y)
        for (int x = 40; x < 200; ++x) {
            if (GetRValue(frame.colour(left + x, top + y)) > 110)
                continue;
            right += x + 0.5 - meter.pivotX;
            up -= y + 0.5 - meter.pivotY;
        }
    return up > 0 ? std::atan2(right, up) * 180 / std::numbers::pi : std::nan("");
}

TEST_F(Meters, NeedlesAndLampsFollowTheirChannels) {
    withMeters("", [&](Builder& meter) {
        for (const NeedleMeter& row : {kSquare, kRound}) {
            SCOPED_TRACE(row.key);
            meter.choose(row.key);
            meter.set("Sound", sound_.path());
            const std::vector<Frame> seen =
                frames(meter, "*MainAlphaTrans=1 Size=256 Frames=7 Normalize=0 MatchTime=0 Padding=12");
            for (int i = 0; i < kFrames; ++i) {
                const Frame& frame = seen[static_cast<std::size_t>(i)];
                ASSERT_TRUE(frame.width() == 2 * row.side + 3 * 12 && frame.height() == row.side + 2 * 12);
                ASSERT_EQ(frame.bits(), 32);
                EXPECT_EQ(frame.info.delay, 7u);
                for (const bool second : {false, true}) {
                    const int level = levelOf(i, second);
                    const int left = 12 + (second ? row.side + 12 : 0);
                    EXPECT_NEAR(needleDegrees(frame, row, left, 12), row.degrees * (2 * level / 255.0 - 1), 1.2) << i;
                    EXPECT_EQ(GetRValue(frame.colour(left + row.lampX, 12 + row.lampY)) > 200, level >= 228) << i;
                    for (const int corner : {0, row.side - 1}) {
                        EXPECT_EQ(frame.colour(left + corner, 12 + corner), kBehindAlpha);
                        EXPECT_EQ(frame.alpha(left + corner, 12 + corner), 0);
                    }
                    const int middle = 12 + row.side / 2;
                    EXPECT_EQ(frame.alpha(left - 1, middle) + frame.alpha(left + row.side, middle), 0);
                    EXPECT_EQ(frame.alpha(left + 1, middle) + frame.alpha(left + row.side - 2, middle), 2 * 255);
                }
            }
        }
        meter.choose(kSquare.key);
        const int cases[][3] = {{1, 0, 128}, {2, 254, 226}, {3, 127, 177}}; // left, right, both halved
        for (const auto& [channels, first, third] : cases) {
            const std::vector<Frame> seen =
                frames(meter, "Size=256 Frames=7 Normalize=0 UsePadding=0 Channels=" + std::to_string(channels));
            ASSERT_EQ(seen[0].width(), kSquare.side);
            EXPECT_NEAR(needleDegrees(seen[0], kSquare, 0, 0), 40 * (2 * first / 255.0 - 1), 1.2) << channels;
            EXPECT_NEAR(needleDegrees(seen[2], kSquare, 0, 0), 40 * (2 * third / 255.0 - 1), 1.2) << channels;
            EXPECT_EQ(seen[0].info.delay, 10u);
        }
    });
}

constexpr int kTube = 160;

// Degrees of the cone without light, in the tube whose square begins at (left, top), against those for a level: silence
// leaves 100, and 220 of 255 close the shadow.
void expectShadow(const Frame& frame, int left, int top, int level) {
    int dark = 0;
    for (int degrees = -90; degrees < 90; ++degrees) {
        const double angle = degrees * std::numbers::pi / 180;
        dark += GetGValue(frame.colour(left + static_cast<int>(kTube * (0.5 + 0.26 * std::sin(angle))),
                                       top + static_cast<int>(kTube * (0.5 + 0.26 * std::cos(angle))))) < 110;
    }
    EXPECT_NEAR(dark, std::max(100 - level * 116 / 255.0, 0.0), 4) << level;
}

TEST_F(Meters, EyesFollowTheirChannelsAndAreCutOut) {
    withBuilder("MainMagicEye", "*Truecolour=1 *MainDelay=7 Size=160 Frames=7 Normalize=0", [&](Builder& eye) {
        eye.set("Sound", sound_.path());
        for (const char* smooth : {"*MainAntialias=1", "*MainAntialias=0"}) {
            const std::vector<Frame> seen =
                frames(eye, smooth + std::string(" *MainAlphaTrans=1 MatchTime=0 Padding=12"));
            for (int i = 0; i < kFrames; ++i) {
                const Frame& frame = seen[static_cast<std::size_t>(i)];
                ASSERT_TRUE(frame.width() == 2 * kTube + 3 * 12 && frame.height() == kTube + 2 * 12);
                ASSERT_EQ(frame.bits(), 32);
                EXPECT_EQ(frame.info.delay, 7u);
                for (const bool second : {false, true}) {
                    const int left = second ? 24 + kTube : 12;
                    expectShadow(frame, left, 12, levelOf(i, second));
                    EXPECT_EQ(frame.colour(left, 12), kBehindAlpha);
                    EXPECT_EQ(frame.alpha(left, 12) + frame.alpha(left - 1, 12 + kTube / 2), 0);
                    EXPECT_EQ(frame.alpha(left + 1, 12 + kTube / 2), 255);
                }
            }
        }
        const std::vector<Frame> right = frames(eye, "UsePadding=0 GreenColor=#FFFFFF BlackColor=#FF0000 Channels=2");
        for (int i = 0; i < kFrames; ++i) {
            const Frame& frame = right[static_cast<std::size_t>(i)];
            ASSERT_EQ(frame.width(), kTube);
            EXPECT_EQ(frame.info.delay, 10u);
            expectShadow(frame, 0, 0, levelOf(i, true));
            EXPECT_EQ(frame.colour(0, 0), 255u);
            EXPECT_GT(GetRValue(frame.colour(kTube / 2, kTube / 4)), 200);
        }
    });
}

} // namespace
