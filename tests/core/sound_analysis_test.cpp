// Sounds: their figures in words, levels and bands, and the sound that instruments have at first. Levels and times were
// worked out by hand; bands are compared with filters that are run one after the other over a copy.
#include "defaults/song.h"
#include "sound/band_lanes.h"
#include "sound/sound_analysis.h"
#include "sound/wave_summary.h"
#include "wave_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <numbers>
#include <random>
#include <tuple>

namespace veldran {
namespace {

WaveFormat formatOf(std::uint16_t channels, std::uint32_t rate, std::uint16_t alignment) {
    return {kPcmTag, channels, rate, rate * alignment, alignment, 0};
}

TEST(WaveSummary, FiguresInWords) {
    const std::tuple<WaveFormat, std::size_t, const char*> cases[] = {
        {formatOf(2, 44100, 4), 13318200, "Stereo, 44.1 kHz, 01:15.50"},
        {formatOf(1, 8000, 1), 0, "Mono, 8.0 kHz, 00:00.00"},
        {formatOf(6, 96000, 12), 1152000, "Stereo, 96.0 kHz, 00:01.00"},
        {formatOf(1, 100, 1), 29, "Mono, 0.1 kHz, 00:00.29"}, // as a float a little less than 29 hundredths
        {formatOf(1, 1, 1), 4294967295, "Mono, 0.0 kHz, 71582788:15.00"},
        {formatOf(0, 8000, 0), 8000, "Stereo, 8.0 kHz, 00:00.00"},
        {formatOf(1, 0, 2), 8000, "Mono, 0.0 kHz, 00:00.00"}};
    for (const auto& [format, dataBytes, text] : cases)
        EXPECT_EQ(waveFigures(format, dataBytes), text);
}

TEST(WaveSummary, NamesItsLines) {
    EXPECT_EQ(waveSummary("50%s.wav", formatOf(1, 22050, 2), 44100 * 65),
              "50%s.wav\n\nChannels: Mono\nSample rate: 22.0 kHz\nPlaying time: 01:05.00");
}

using Numbers = std::vector<std::int32_t>;

constexpr std::int32_t kSilent = -2147483647 - 1;

TEST(SoundLevels, PeaksOfEachKindOfSample) {
    const struct {
        const char* what;
        WaveFormat format;
        Bytes samples;
        std::array<Numbers, 3> levels; // left, right, mono: one for each frame
    } cases[] = {
        {"bytes", pcm(1, 8), {127, 255, 0, 128, 9}, {{{256, 254}, {256, 254}, {256, 254}}}},
        {"pairs of bytes", pcm(2, 8), {130, 120, 127, 127, 0, 255, 100, 9}, {{{6, 254}, {14, 256}, {10, 255}}}},
        {"words", pcm(1, 16), words({255, -256, 0, 511, 32767, -32768, 5, 5}), {{{1}, {1}, {1}}}},
        {"slices beyond the end", pcm(1, 16), words({-32768, 256}), {{{128, 0, 0}, {128, 0, 0}, {128, 0, 0}}}},
        {"pairs of words", pcm(2, 16), words({32767, -32768, 256, -511, 0, 0, 9, 9}), {{{127, 0}, {128, 0}, {127, 0}}}},
        {"half a pair at the end", pcm(2, 16), words({256, 512, 768}), {{{1}, {2}, {1}}}},
        {"more frames than samples", pcm(1, 8), {255, 255}, {{{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}}},
        {"no samples", pcm(2, 16), {}, {{{0, 0}, {0, 0}, {0, 0}}}},
        {"no channels", pcm(0, 8), {255, 255}, {{{0}, {0}, {0}}}}};
    for (const auto& c : cases) {
        const auto frames = static_cast<std::uint32_t>(c.levels[0].size());
        const auto levels = analyseSound(c.format, c.samples, frames, SoundMeasure::Levels, SoundScale::Raw)->levels;
        EXPECT_EQ((std::array{levels.left, levels.right, levels.mono}), c.levels) << c.what;
    }
}

// A loud sample is found wherever it lies in a slice, on its own side alone.
TEST(SoundLevels, NoSampleIsMissed) {
    for (const int bits : {8, 16})
        for (std::size_t at = 0; at < 150; ++at) {
            Bytes samples(bits == 8 ? 150 : 300, bits == 8 ? 127 : 0);
            samples[bits == 8 ? at : 2 * at + 1] = 1;
            const auto levels = analyseSound(pcm(2, bits), samples, 3, SoundMeasure::Levels, SoundScale::Raw)->levels;
            std::array<Numbers, 2> expected{Numbers(3), Numbers(3)};
            expected[at % 2][at / 50] = bits == 8 ? 252 : 1;
            EXPECT_EQ((std::array{levels.left, levels.right}), expected) << at;
        }
}

TEST(SoundLevels, Normalising) {
    const auto levelsOf = [](const WaveFormat& format, const Bytes& samples, std::uint32_t frames, SoundScale scale) {
        return analyseSound(format, samples, frames, SoundMeasure::Levels, scale)->levels;
    };
    const Bytes left = words({64 * 256, 0, 32 * 256, 0, 0, 0});
    const ChannelLevels levels = levelsOf(pcm(2, 16), left, 3, SoundScale::Normalised);
    // 255 / 64 + 0.5 is 4.484375: 287 and 143.5.
    EXPECT_EQ(levels.left, (Numbers{255, 143, 0}));
    EXPECT_EQ(levels.right, Numbers(3, kSilent));
    EXPECT_EQ(levels.mono, (Numbers{-1073741696, -1073741752, -1073741824}));
    EXPECT_EQ(shownLevel(levels, SoundChannels::Stereo, 0, 1), 143);
    EXPECT_EQ(shownLevel(levels, SoundChannels::Stereo, 1, 1), 0);
    EXPECT_EQ(shownLevel(levels, SoundChannels::Right, 0, 0), 0);
    EXPECT_EQ(shownLevel(levels, SoundChannels::Left, 0, 3), 0); // there is no such frame
    const ChannelLevels silent = levelsOf(pcm(2, 8), Bytes(64, 127), 1, SoundScale::Normalised);
    EXPECT_EQ(silent.mono, Numbers{kSilent}); // not 0, which 32 bits would make of the sum
    const ChannelLevels loud = levelsOf(pcm(1, 8), Bytes(4, 255), 1, SoundScale::Raw);
    EXPECT_EQ(shownLevel(loud, SoundChannels::Mono, 0, 0), 255); // of 256
}

TEST(SoundAnalysis, RefusesWhatItCannotMeasure) {
    WaveFormat compressed = pcm(2, 16);
    compressed.tag = 0x55;
    for (const SoundMeasure measure : {SoundMeasure::Levels, SoundMeasure::Spectrum}) {
        const auto measured = [measure](const WaveFormat& format, std::uint32_t frames = 2) {
            return analyseSound(format, Bytes(96, 200), frames, measure, SoundScale::Raw).has_value();
        };
        EXPECT_TRUE(measured(pcm(2, 16)));
        EXPECT_FALSE(measured(pcm(2, 16), 0));
        EXPECT_FALSE(measured(compressed));
        EXPECT_EQ(measured(pcm(3, 8)), measure == SoundMeasure::Levels);
        for (const int bits : {0, 4, 12, 24, 32})
            EXPECT_FALSE(measured(pcm(1, bits))) << bits;
    }
}

TEST(SoundAnalysis, PlayingTimesAndDelays) {
    const std::tuple<WaveFormat, int, int> cases[] = {{pcm(1, 16, 22050), 1000, 500},
                                                      {pcm(1, 8, 96000), 459, 229}, // 459.375
                                                      {pcm(2, 8, 0), 0, 0}};
    for (const auto& [format, levels, spectrum] : cases)
        for (const auto& [measure, time] :
             {std::pair{SoundMeasure::Levels, levels}, {SoundMeasure::Spectrum, spectrum}})
            EXPECT_EQ(analyseSound(format, Bytes(44100, 99), 4, measure, SoundScale::Raw)->playingMilliseconds, time);
    for (const auto& [time, frames, unit, delay] :
         {std::array{4000u, 128u, 10u, 3u}, {4000, 128, 1, 31}, {4000, 32760, 10, 1}, {0, 1, 1, 1}})
        EXPECT_EQ(matchedDelay(static_cast<std::int32_t>(time), frames, unit), delay);
}

// Any sound as pairs of words.
std::vector<std::int16_t> pairsOf(const WaveFormat& format, const Bytes& samples) {
    const std::size_t size = format.bitsPerSample / 8u;
    std::vector<std::int16_t> pairs;
    for (std::size_t i = 0; i + size <= samples.size(); i += size) {
        const int value = size == 1 ? (samples[i] - 127) * 256 : samples[i] | samples[i + 1] << 8;
        pairs.insert(pairs.end(), format.channels == 1 ? 2 : 1, static_cast<std::int16_t>(value));
    }
    if (size == 1)
        pairs.resize(pairs.size() / 2 * 2);
    return pairs;
}

// A band the plain way: the first `count` values filtered in place.
void filter(std::vector<std::int16_t>& values, std::size_t count, std::uint32_t rate, double centre, double width) {
    const double c = 1 / std::tan(std::numbers::pi * width / rate);
    const double d = 2 * std::cos(2 * std::numbers::pi * centre / rate);
    const double a0 = 1 / (1 + c), a1 = 0, a2 = -a0, b1 = -c * d * a0, b2 = (c - 1) * a0;
    double x1[2]{}, x2[2]{}, y1[2]{}, y2[2]{};
    for (std::size_t i = 0; i < std::min(count, values.size()); ++i) {
        const std::size_t k = i % 2;
        const double x = values[i] * (1 / 32767.0);
        const double y = a0 * x + a1 * x1[k] + a2 * x2[k] - b1 * y1[k] - b2 * y2[k];
        x2[k] = x1[k], x1[k] = x, y2[k] = y1[k], y1[k] = y;
        const bool fits = std::abs(y * 32767) < 2147483648.0; // not a number does not
        values[i] = static_cast<std::int16_t>(fits ? static_cast<std::int32_t>(y * 32767) : kSilent);
    }
}

void expectPlainBands(const WaveFormat& format, const Bytes& samples, std::uint32_t frames) {
    const auto analysis = analyseSound(format, samples, frames, SoundMeasure::Spectrum, SoundScale::Raw);
    ASSERT_TRUE(analysis);
    const double centres[] = {31, 62, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
    const double widths[] = {31, 49, 94, 180, 375, 750, 750, 750, 1500, 1500};
    const std::size_t slice = samples.size() / 4 / (frames + 1);
    for (std::size_t b = 0; b < 10; ++b) {
        std::vector<std::int16_t> values = pairsOf(format, samples);
        filter(values, samples.size() / 2, format.samplesPerSecond, centres[b], widths[b]);
        std::array<Numbers, 3> expected{Numbers(frames + 1), Numbers(frames + 1), Numbers(frames + 1)};
        for (std::size_t i = 8; i < 8 + 2 * slice * (frames + 1) && i < values.size(); ++i) {
            std::int32_t& peak = expected[i % 2][(i - 8) / 2 / slice];
            peak = std::max(peak, std::abs(int{values[i]}) / 256);
        }
        std::ranges::transform(expected[0], expected[1], expected[2].begin(), [](int l, int r) { return (l + r) / 2; });
        const ChannelLevels& band = analysis->bands[b];
        EXPECT_EQ((std::array{band.left, band.right, band.mono}), expected) << b;
    }
}

using Wave = std::function<double(std::size_t)>;

// Samples of a wave that gives -1 to 1 for each number of a sample, counted through both channels.
Bytes samplesOf(const WaveFormat& format, std::size_t bytes, const Wave& wave) {
    std::vector<int> values;
    for (std::size_t i = 0; i < bytes; ++i)
        values.push_back(static_cast<int>(format.bitsPerSample == 8 ? std::lround(wave(i) * 127) + 127
                                                                    : std::lround(wave(i) * 32767)));
    Bytes samples = format.bitsPerSample == 8 ? Bytes(values.begin(), values.end()) : words(values);
    samples.resize(bytes);
    return samples;
}

Wave sine(double cyclesPerPair, double size) {
    return [=](std::size_t i) {
        return size * std::sin(2 * std::numbers::pi * cyclesPerPair * static_cast<double>(i / 2));
    };
}

TEST(SoundSpectrum, EqualsFiltersRunOneAfterTheOther) {
    std::mt19937 random(7);
    const Wave noise = [&](std::size_t) { return static_cast<double>(random() % 65535) / 32767 - 1; };
    const Wave square = [](std::size_t i) { return i / 700 % 2 == 0 ? 1 : -1; }; // its bands are too loud for 16 bits
    const Wave burst = [&](std::size_t i) { return i < 300 ? noise(i) : 0; };
    for (const WaveFormat& format : {pcm(2, 16), pcm(1, 16), pcm(2, 8), pcm(1, 8)}) {
        for (const Wave& wave : {noise, square, burst, sine(0.01, 1), sine(0, 0)})
            for (const std::size_t bytes : {9000u, 9001u, 9002u, 9003u})
                expectPlainBands(format, samplesOf(format, bytes, wave), 6);
        for (std::size_t bytes = 0; bytes < 50; ++bytes) // slices of none, one and two pairs
            expectPlainBands(format, samplesOf(format, bytes, noise), 3);
    }
    // Down to rates at which a filter is unstable, or no number at all.
    for (const std::uint32_t rate : {192000u, 22050u, 8000u, 3001u, 3000u, 1000u, 7u, 0u})
        expectPlainBands(pcm(2, 16, rate), samplesOf(pcm(2, 16), 6000, noise), 4);
    expectPlainBands(pcm(2, 16), samplesOf(pcm(2, 16), 20000, noise), 1);
}

TEST(SoundSpectrum, NormalisesAllBandsTogether) {
    const WaveFormat format = pcm(2, 16);
    const auto loudLow = sine(500 / 44100.0, 0.5), quietHigh = sine(8000 / 44100.0, 0.25);
    const Bytes samples =
        samplesOf(format, 80000, [&](std::size_t i) { return i % 2 == 0 ? loudLow(i) + quietHigh(i) : 0.0; });
    const auto raw = analyseSound(format, samples, 3, SoundMeasure::Spectrum, SoundScale::Raw);
    const auto scaled = analyseSound(format, samples, 3, SoundMeasure::Spectrum, SoundScale::Normalised);
    EXPECT_EQ(scaled->bands[4].left[2], 255);
    EXPECT_NEAR(scaled->bands[8].left[2], 31 * (255.0 / 64 + 0.5), 9);
    EXPECT_EQ(scaled->bands[8].right, Numbers(4, kSilent));
    EXPECT_EQ(scaled->bands[4].mono, raw->bands[4].mono);
    EXPECT_TRUE(scaled->levels.left.empty());
}

TEST(BandLanes, RegistersOfBothLengthsGiveTheSameBits) {
    if (!hasAvx())
        GTEST_SKIP() << "This processor has registers of one length.";
    std::mt19937 random(3);
    std::uniform_real_distribution<double> sample(-1, 1);
    BandFactors factors{};
    for (std::size_t lane = 0; lane < kBandLanes; ++lane) { // the last one grows beyond what a double holds
        factors.gain[lane] = sample(random);
        factors.b1[lane] = -1.8 * sample(random);
        factors.b2[lane] = lane + 1 < kBandLanes ? 0.9 : 30;
    }
    alignas(32) double input[2 * 300];
    std::ranges::generate(input, [&] { return sample(random); });
    BandState states[2]{};
    alignas(32) double loudest[2][kBandLanes]{};
    for (const std::size_t pairs : {0, 1, 2, 3, 17, 300}) {
        runBandLanesSse2(factors, states[0], input, pairs, loudest[0]);
        runBandLanesAvx(factors, states[1], input, pairs, loudest[1]);
        EXPECT_EQ(std::memcmp(&states[0], &states[1], sizeof(BandState)), 0) << pairs;
        EXPECT_EQ(std::memcmp(loudest[0], loudest[1], sizeof loudest[0]), 0) << pairs;
        EXPECT_EQ(loudest[0][0] > 0, pairs > 0);
    }
}

TEST(DefaultSound, MovesEveryBandOnBothSides) {
    const std::string file = defaults::waveFile(defaults::song());
    WaveFormat format;
    std::memcpy(&format, file.data() + 20, sizeof format);
    const Bytes samples(file.begin() + 44, file.end());
    const auto spectrum = analyseSound(format, samples, 128, SoundMeasure::Spectrum, SoundScale::Normalised);
    ASSERT_TRUE(spectrum);
    EXPECT_EQ(spectrum->playingMilliseconds, 4000);
    for (const ChannelLevels& band : spectrum->bands)
        for (const auto& levels : {band.left, band.right}) {
            EXPECT_GT(std::ranges::max(levels), 255 / 2);
            EXPECT_LT(std::ranges::min(levels), std::ranges::max(levels) / 3);
        }
}

TEST(DefaultSound, LoopsWithoutAClick) {
    const defaults::Loop loop = defaults::song();
    std::vector<double> steps;
    for (std::size_t i = 0; i < loop.size(); ++i)
        steps.push_back(std::abs(loop.left(i + 1) - loop.left(i)));
    EXPECT_LT(steps.back(), std::ranges::max(steps) / 2);
}

} // namespace
} // namespace veldran
