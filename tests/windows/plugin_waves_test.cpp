// Pictures of the sound map and the sound scan, measured in true-colour frames of sounds that the test writes: where
// the wave lies, how many frames there are and how long they last, what a missing sound does.
#include "built_frames.h"
#include "sound_bytes.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace recording;

// A stereo sound of 1000 pairs a second; both channels keep their level for each of the parts, `pairs` long.
std::string partsSound(const std::vector<std::pair<int, int>>& parts, int pairs) {
    std::string samples;
    for (const auto& [left, right] : parts)
        for (int i = 0; i < pairs; ++i)
            samples += little(static_cast<std::uint32_t>(left), 2) + little(static_cast<std::uint32_t>(right), 2);
    return stereoSound(1000, 16, samples);
}

// Green on a screen of black, without scale and bezel and with a margin of 4.
constexpr char kFace[] = "*Truecolour=1 *MainDelay=7 GreenColor=#00C000 BlackColor=0 ScaleColor=#0000FF "
                         "PanelColor=#FF0000 UseBezel=0 UseScale=0 Size=96 Padsize=4 ";

std::vector<Frame> framesOf(Builder& wave, const std::string& sound, const std::string& settings) {
    const TemporaryFile file("veldran-waves-test.wav", sound);
    wave.set("Sound", file.path());
    return wave.frames(settings);
}

// The rows of a column whose light is not that of a halo; the mean of them between `from` and `to`, or -1.
double traceRow(const Frame& frame, int x, int from, int to) {
    double sum = 0;
    double light = 0;
    for (int y = from; y < to; ++y) {
        sum += GetGValue(frame.colour(x, y)) * (y + 0.5);
        light += GetGValue(frame.colour(x, y));
    }
    return light > 100 ? sum / light : -1;
}

TEST(Waves, MapDrawsAPartOfTheSoundInEachFrame) {
    const std::string sound = partsSound({{0, 0}, {16384, -8192}, {-16384, 0}, {8192, 4096}}, 500);
    const double left[] = {0, 0.5, -0.5, 0.25};
    const double right[] = {0, -0.25, 0, 0.125};
    const char* const channelsOf[] = {
        "Channels=0 Normalize=0 *MainAntialias=1", "Channels=1 Normalize=1 *MainAntialias=0",
        "Channels=2 Normalize=0 *MainAntialias=1", "Channels=3 Normalize=1 *MainAntialias=0"};
    const auto draw = [&](Builder& map) {
        for (std::size_t channels = 0; channels < 4; ++channels) {
            const bool normalise = channels % 2 != 0;
            const std::vector<Frame> frames = framesOf(map, sound, channelsOf[channels]);
            ASSERT_EQ(frames.size(), 4u);
            for (std::size_t i = 0; i < 4; ++i) {
                const Frame& frame = frames[i];
                ASSERT_TRUE(frame.width() == 72 && frame.height() == 104);
                EXPECT_EQ(frame.info.delay, 500u); // a quarter of two seconds
                const double l = left[i] * (normalise ? 2 : 1);
                const double r = right[i] * (normalise ? 4 : 1);
                const double shown = channels == 3 ? (l + r) / 2 : channels == 2 ? r : l;
                // Full scale lies 6 % inside of what the wave may take: all of the height, or half of it each.
                if (channels != 0) {
                    EXPECT_NEAR(traceRow(frame, 36, 0, 104), 52 - shown * 48 * 0.94, 1) << channels << ' ' << i;
                } else {
                    EXPECT_NEAR(traceRow(frame, 36, 0, 52), 28 - l * 24 * 0.94, 1) << i;
                    EXPECT_NEAR(traceRow(frame, 36, 52, 104), 76 - r * 24 * 0.94, 1) << i;
                }
                EXPECT_TRUE(traceRow(frame, 5, 0, 104) > 0 && traceRow(frame, 66, 0, 104) > 0);
                EXPECT_TRUE(traceRow(frame, 2, 0, 104) < 0 && traceRow(frame, 69, 0, 104) < 0);
            }
        }
        const Frame face =
            framesOf(map, partsSound({{0, 0}}, 100), "UseBezel=1 BezelSize=16 MatchTime=0 Glow=12").at(0);
        ASSERT_TRUE(face.width() == 104 && face.height() == 136);
        EXPECT_EQ(face.info.delay, 7u);
        EXPECT_EQ(face.colour(0, 0), 255u);           // the panel
        EXPECT_GT(GetGValue(face.colour(38, 47)), 0); // four rows from the trace the glow is seen
    };
    withBuilder("MainSonic", std::string(kFace) + "Width=64 Frames=4", draw, 0);
}

void expectScan(const std::vector<Frame>& frames) {
    ASSERT_EQ(frames.size(), 7u); // the last step is shorter
    for (std::size_t i = 0; i < 7; ++i) {
        const Frame& frame = frames[i];
        EXPECT_EQ(frame.info.delay, i == 6 ? 257u : 7u);
        const int head = std::min(4 + 10 * static_cast<int>(i + 1), 68);
        for (int x = 0; x < 72; ++x) {
            const double row = traceRow(frame, x, 0, 104);
            if (x < 4 || x > head + 7) {
                EXPECT_EQ(row, -1) << i << ' ' << x;
            } else if (x < head - 7 && std::abs(x - 36) > 2) {
                EXPECT_NEAR(row, x < 36 ? 52 - 22.5 : 52 + 22.5, 1) << i << ' ' << x;
            }
        }
    }
    EXPECT_GT(GetRValue(frames[1].colour(24, 29)), 200); // the beam is white
}

TEST(Waves, ScanIsWrittenFromLeftToRightAndFadesToTheDarkFactor) {
    const std::string sound = partsSound({{16384, 16384}, {-16384, -16384}}, 3200);
    const std::string settings = std::string(kFace) + "Width=64 Channels=1 Pause=25";
    const auto scanIn = [&](Builder& scan) {
        for (const char* edges : {" *MainAntialias=0", " *MainAntialias=1"})
            expectScan(framesOf(scan, sound, std::string("StepSize=10 Normalize=0 Fade=0") + edges));
        const std::string flat = partsSound({{0, 0}}, 1000);
        const Frame bright = framesOf(scan, flat, "StepSize=64 Fade=0").at(0);
        const Frame faded = framesOf(scan, flat, "StepSize=64 Fade=1").at(0);
        const auto light = [](const Frame& frame, int x) { return GetGValue(frame.colour(x, 51)); };
        for (const int x : {8, 20, 36, 52, 64})
            EXPECT_NEAR(light(faded, x), light(bright, x) * (0.4 + 0.6 * (x - 4) / 64), 6) << x;
    };
    withBuilder("MainVoice", settings + " *AdvancedVoiceDarkColorFactor=40", scanIn, 0);
    withBuilder("MainVoice", settings, [&](Builder& scan) { // in hundredths
        EXPECT_EQ(framesOf(scan, sound, "").back().info.delay, 32u);
    });
}

} // namespace
