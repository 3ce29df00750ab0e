// Slices are views of the samples: nothing is copied but what the filters have in hand.
#include "sound/sound_analysis.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace veldran {
namespace {

constexpr double kFullLevel = 255;
constexpr std::size_t kLeadPairs = 4; // before the first slice of a spectrum
constexpr std::int32_t kPeakDivisor = 256;

std::int32_t playingTime(const WaveFormat& format, std::size_t dataBytes) {
    const std::uint64_t longest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(playingMilliseconds(format, dataBytes), longest));
}

ChannelLevels zeroLevels(std::size_t count) {
    const std::vector<std::int32_t> zeros(count);
    return {zeros, zeros, zeros};
}

// The sum may need 33 bits.
void mixMono(ChannelLevels& levels) {
    for (std::size_t i = 0; i < levels.mono.size(); ++i)
        levels.mono[i] = static_cast<std::int32_t>((std::int64_t{levels.left[i]} + levels.right[i]) / 2);
}

std::int32_t largest(const std::vector<std::int32_t>& levels) {
    return levels.empty() ? 0 : std::max(0, *std::ranges::max_element(levels));
}

void normalise(std::vector<std::int32_t>& levels, std::int32_t loudest) {
    const double factor = kFullLevel / loudest + 0.5;
    for (std::int32_t& level : levels) {
        const double scaled = level * factor;
        level = std::isnan(scaled) ? kSilentLevel : static_cast<std::int32_t>(std::clamp(scaled, 0.0, kFullLevel));
    }
}

// Samples, or pairs of them, in a slice of a sound of `bytes`.
std::size_t sliceLength(SampleLayout layout, std::size_t bytes, std::size_t frames) {
    return layout == SampleLayout::Mono16 ? 2 * frames : bytes / sampleStride(layout) / frames;
}

ChannelLevels measureLevels(SampleLayout layout, std::span<const std::uint8_t> samples, std::size_t frames) {
    ChannelLevels levels = zeroLevels(frames);
    const std::size_t step = sliceLength(layout, samples.size(), frames) * sampleStride(layout);
    for (std::size_t i = 0; i < frames; ++i) {
        const ChannelPeaks peaks = channelPeaks(layout, samples.first(std::min(step, samples.size())));
        levels.left[i] = peaks.left;
        levels.right[i] = peaks.right;
        samples = samples.subspan(std::min(step, samples.size()));
    }
    return levels;
}

void analyseLevels(const WaveFormat& format, std::optional<SampleLayout> layout, std::span<const std::uint8_t> samples,
                   SoundScale scale, SoundAnalysis& analysis) {
    analysis.playingMilliseconds = playingTime(format, samples.size());
    ChannelLevels& levels = analysis.levels;
    levels = layout ? measureLevels(*layout, samples, analysis.frames) : zeroLevels(analysis.frames);
    if (scale == SoundScale::Normalised) {
        normalise(levels.left, largest(levels.left));
        normalise(levels.right, largest(levels.right));
    }
    mixMono(levels);
}

void raise(BandPeaks& peaks, const BandPeaks& others) {
    for (std::size_t band = 0; band < peaks.size(); ++band)
        peaks[band].raise(others[band]);
}

// Gives a sound stretch by stretch to the filters, as far as it is filtered; what comes behind that counts as it is.
class SpectrumMeter {
public:
    SpectrumMeter(const WaveFormat& format, SampleLayout layout, std::span<const std::uint8_t> bytes)
        : samples_(layout, bytes), bank_(format.samplesPerSecond),
          filteredSamples_(bytes.size() / sizeof(std::int16_t)) {}

    // Peaks of the next `pairs` pairs, 0 to 32768.
    BandPeaks measure(std::size_t pairs) {
        BandPeaks peaks{};
        const std::size_t filteredPairs = filteredSamples_ / 2;
        for (const std::size_t end = at_ + pairs; at_ < end;) {
            if (at_ < filteredPairs)
                raise(peaks, bank_.filter(next(std::min(filteredPairs, end) - at_)));
            else
                raise(peaks, tail(next(1)));
        }
        return peaks;
    }

private:
    std::span<const StereoPair> next(std::size_t most) {
        const std::span<StereoPair> block = std::span(block_).first(std::min(most, block_.size()));
        samples_.read(at_, block);
        at_ += block.size();
        return block;
    }

    // A pair behind the last whole filtered one; the left side of the first such may be filtered yet.
    BandPeaks tail(std::span<const StereoPair> pair) {
        const std::int32_t left = std::abs(std::int32_t{pair.front().left});
        const std::int32_t right = std::abs(std::int32_t{pair.front().right});
        BandPeaks peaks = bank_.filter(pair);
        const bool leftIsFiltered = 2 * at_ - 1 == filteredSamples_;
        for (ChannelPeaks& band : peaks)
            band = {leftIsFiltered ? band.left : left, right};
        return peaks;
    }

    StereoSamples samples_;
    BandBank bank_;
    std::size_t filteredSamples_; // of both channels together, from the first on
    std::size_t at_ = 0;          // pairs taken
    std::array<StereoPair, BandBank::kBlockPairs> block_;
};

void measureBands(SpectrumMeter& meter, std::size_t slices, std::size_t pairs, SoundAnalysis& analysis) {
    meter.measure(kLeadPairs);
    for (std::size_t i = 0; i < slices; ++i) {
        const BandPeaks peaks = meter.measure(pairs);
        for (std::size_t band = 0; band < peaks.size(); ++band) {
            analysis.bands[band].left[i] = peaks[band].left / kPeakDivisor;
            analysis.bands[band].right[i] = peaks[band].right / kPeakDivisor;
        }
    }
}

// With the largest level of all bands on each side.
void normaliseBands(SoundAnalysis& analysis) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    for (const ChannelLevels& band : analysis.bands) {
        left = std::max(left, largest(band.left));
        right = std::max(right, largest(band.right));
    }
    for (ChannelLevels& band : analysis.bands) {
        normalise(band.left, left);
        normalise(band.right, right);
    }
}

void analyseSpectrum(const WaveFormat& format, SampleLayout layout, std::span<const std::uint8_t> samples,
                     SoundScale scale, SoundAnalysis& analysis) {
    const std::size_t slices = std::size_t{analysis.frames} + 1;
    analysis.playingMilliseconds = playingTime(stereoFormat(format), samples.size());
    analysis.bands.fill(zeroLevels(slices));
    SpectrumMeter meter(format, layout, samples);
    measureBands(meter, slices, sliceLength(SampleLayout::Stereo16, samples.size(), slices), analysis);
    for (ChannelLevels& band : analysis.bands)
        mixMono(band);
    if (scale == SoundScale::Normalised)
        normaliseBands(analysis);
}

} // namespace

std::optional<SoundAnalysis> analyseSound(const WaveFormat& format, std::span<const std::uint8_t> samples,
                                          std::uint32_t frames, SoundMeasure measure, SoundScale scale) {
    const bool known = format.bitsPerSample == 8 || format.bitsPerSample == 16;
    const std::optional<SampleLayout> layout = sampleLayout(format);
    if (frames == 0 || format.tag != kPcmTag || !known || (measure == SoundMeasure::Spectrum && !layout))
        return std::nullopt;
    SoundAnalysis analysis;
    analysis.frames = frames;
    if (measure == SoundMeasure::Spectrum)
        analyseSpectrum(format, *layout, samples, scale, analysis);
    else
        analyseLevels(format, layout, samples, scale, analysis);
    return analysis;
}

int shownLevel(const ChannelLevels& levels, SoundChannels channels, int display, std::size_t frame) {
    const bool right = channels == SoundChannels::Right || (channels == SoundChannels::Stereo && display == 1);
    const std::vector<std::int32_t>& side = channels == SoundChannels::Mono ? levels.mono
                                            : right                         ? levels.right
                                                                            : levels.left;
    return frame < side.size() ? std::clamp(side[frame], 0, static_cast<int>(kFullLevel)) : 0;
}

std::uint32_t matchedDelay(std::int32_t playingMilliseconds, std::uint32_t frames, std::uint32_t unitMilliseconds) {
    const std::uint32_t milliseconds = static_cast<std::uint32_t>(std::max(playingMilliseconds, 0));
    return std::max(milliseconds / frames / unitMilliseconds, 1u);
}

} // namespace veldran
