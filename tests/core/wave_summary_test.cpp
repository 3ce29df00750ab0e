// What is told of a sound. Times were worked out by hand.
#include "sound/wave_summary.h"

#include <gtest/gtest.h>

namespace veldran {
namespace {

WaveFormat formatOf(std::uint16_t channels, std::uint32_t rate, std::uint16_t alignment) {
    return {kPcmTag, channels, rate, rate * alignment, alignment, 0};
}

TEST(WaveSummary, FiguresInWords) {
    const struct {
        WaveFormat format;
        std::size_t dataBytes;
        const char* text;
    } cases[] = {
        {formatOf(2, 44100, 4), 13318200, "Stereo, 44.1 kHz, 01:15.50"},
        {formatOf(1, 8000, 1), 0, "Mono, 8.0 kHz, 00:00.00"},
        {formatOf(6, 96000, 12), 1152000, "Stereo, 96.0 kHz, 00:01.00"},
        {formatOf(1, 100, 1), 29, "Mono, 0.1 kHz, 00:00.29"}, // as a float a little less than 29 hundredths
        {formatOf(1, 1, 1), 4294967295, "Mono, 0.0 kHz, 71582788:15.00"},
        {formatOf(0, 8000, 0), 8000, "Stereo, 8.0 kHz, 00:00.00"},
        {formatOf(1, 0, 2), 8000, "Mono, 0.0 kHz, 00:00.00"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(waveFigures(c.format, c.dataBytes), c.text);
}

TEST(WaveSummary, NamesItsLines) {
    EXPECT_EQ(waveSummary("50%s.wav", formatOf(1, 22050, 2), 44100 * 65),
              "50%s.wav\n\nChannels: Mono\nSample rate: 22.0 kHz\nPlaying time: 01:05.00");
}

} // namespace
} // namespace veldran
