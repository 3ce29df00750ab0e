// The format record and the samples of a WAV file: measured, shown as a wave, told in words. Bytes: the record, frames,
// choices, first moment, moments, samples.
#include "fuzz_target.h"

#include "sound/sound_analysis.h"
#include "sound/wave_values.h"

#include <cmath>

using namespace veldran;
using fuzz::mustHold;

namespace {

void checkLevels(const ChannelLevels& levels, std::size_t count, std::int32_t most, SoundScale scale) {
    const bool isNormalised = scale == SoundScale::Normalised;
    for (const auto& channel : {levels.left, levels.right}) {
        mustHold(channel.size() == count, "there is a level a slice");
        for (const std::int32_t level : channel)
            mustHold((level >= 0 && level <= (isNormalised ? 255 : most)) || (isNormalised && level == kSilentLevel),
                     "a level lies on its scale");
    }
    mustHold(levels.mono.size() == count, "there is a level of both a slice");
    for (const SoundChannels channels :
         {SoundChannels::Stereo, SoundChannels::Left, SoundChannels::Right, SoundChannels::Mono})
        for (std::size_t frame = 0; frame <= count; ++frame) {
            const int shown = shownLevel(levels, channels, soundDisplays(channels) - 1, frame);
            mustHold(shown >= 0 && shown <= 255, "what is shown lies on the scale");
        }
}

void checkAnalysis(const WaveFormat& format, std::span<const std::uint8_t> samples, std::uint32_t frames,
                   SoundMeasure measure, SoundScale scale) {
    const auto analysis = analyseSound(format, samples, frames, measure, scale);
    const bool known = format.tag == kPcmTag && (format.bitsPerSample == 8 || format.bitsPerSample == 16);
    mustHold(analysis.has_value() == (known && frames > 0 && (measure == SoundMeasure::Levels || sampleLayout(format))),
             "known sounds are measured and no others");
    if (!analysis)
        return;
    mustHold(analysis->playingMilliseconds >= 0, "time runs forwards");
    mustHold(matchedDelay(analysis->playingMilliseconds, frames, 10) >= 1, "a frame is shown");
    if (measure == SoundMeasure::Levels)
        checkLevels(analysis->levels, frames, 256, scale);
    else
        for (const ChannelLevels& band : analysis->bands)
            checkLevels(band, frames + std::size_t{1}, 128, scale);
}

void checkWave(const WaveValues& wave, bool isSilent, std::size_t first, std::size_t count) {
    constexpr std::size_t kMost = 64;
    for (const int display : {0, 1}) {
        const std::vector<float> values = wave.read(display, first, count, kMost);
        mustHold(values.size() == count || (count > kMost && values.size() <= kMost && !values.empty()),
                 "there are as many values as moments, or as many as there may be");
        mustHold(std::ranges::all_of(values, [&](float v) { return std::abs(v) <= (isSilent ? 0 : 1.0001f); }),
                 "a value lies on the screen");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto format = input.take<WaveFormat>();
    const std::uint32_t frames = input.number(40);
    const unsigned choices = input.number(15);
    const std::size_t first = input.take<std::uint16_t>();
    const std::size_t count = input.take<std::uint16_t>() % 2000;
    const SoundScale scale = (choices & 1) != 0 ? SoundScale::Normalised : SoundScale::Raw;
    const std::span<const std::uint8_t> samples = input.bytes();
    checkAnalysis(format, samples, frames, SoundMeasure::Levels, scale);
    checkAnalysis(format, samples, frames, SoundMeasure::Spectrum, scale);
    const auto channels = static_cast<SoundChannels>(choices / 4);
    checkWave(WaveValues(format, samples, channels, scale), !sampleLayout(format), first, count);
    const std::string figures = waveFigures(format, samples.size());
    mustHold(waveSummary("name", format, samples.size()).find(figures.substr(figures.rfind(' '))) != std::string::npos,
             "short and long figures tell the same time");
    return 0;
}
