// Samples are read where they lie, a block at a time.
#include "sound/wave_values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace veldran {
namespace {

constexpr std::size_t kPairsAtOnce = 512;
constexpr float kLoudestSample = 32768;
constexpr float kByteStep = 256 / kLoudestSample;

// Calls use(pair) for `count` pairs from `first` on.
template <class Use>
void forPairs(const StereoSamples& samples, std::size_t first, std::size_t count, Use use) {
    std::array<StereoPair, kPairsAtOnce> block;
    for (std::size_t done = 0; done < count; done += kPairsAtOnce) {
        const std::span<StereoPair> pairs = std::span(block).first(std::min(kPairsAtOnce, count - done));
        samples.read(first + done, pairs);
        for (const StereoPair pair : pairs)
            use(pair);
    }
}

// The largest byte is a step above what 16 bits hold and has wrapped round; no other byte gives that value.
float unwrapped(std::int16_t value, bool bytes) {
    return bytes && value == std::numeric_limits<std::int16_t>::min() ? kLoudestSample : static_cast<float>(value);
}

// Replaces groups of moments by their smallest and largest value.
class ExtremesOf {
public:
    explicit ExtremesOf(std::vector<float>& values) : values_(values) {}

    void add(float value) {
        if (size_ == 0 || value < low_) {
            low_ = value;
            lowFirst_ = false;
        }
        if (size_ == 0 || value > high_) {
            high_ = value;
            lowFirst_ = size_ > 0;
        }
        ++size_;
    }
    // At least one value has been added.
    void finish() {
        values_.push_back(lowFirst_ ? low_ : high_);
        values_.push_back(lowFirst_ ? high_ : low_);
        size_ = 0;
    }

private:
    std::vector<float>& values_;
    std::size_t size_ = 0;
    float low_ = 0;
    float high_ = 0;
    bool lowFirst_ = false; // the smallest came before the largest
};

} // namespace

WaveValues::WaveValues(const WaveFormat& format, std::span<const std::uint8_t> samples, SoundChannels channels,
                       SoundScale scale)
    : channels_(channels) {
    const std::optional<SampleLayout> layout = sampleLayout(format);
    if (!layout)
        return;
    samples_.emplace(*layout, samples);
    bytes_ = !has16Bits(*layout);
    if (scale != SoundScale::Normalised)
        return;
    // Bytes are silent at the midpoint and beside it.
    const float silence = bytes_ ? kByteStep : 0;
    const Sides peak = loudest();
    gain_ = {peak.left > silence ? 1 / peak.left : 1, peak.right > silence ? 1 / peak.right : 1};
}

WaveValues::Sides WaveValues::sidesOf(StereoPair pair) const {
    return {unwrapped(pair.left, bytes_) / kLoudestSample * gain_.left,
            unwrapped(pair.right, bytes_) / kLoudestSample * gain_.right};
}

WaveValues::Sides WaveValues::loudest() const {
    Sides peak{0, 0};
    // One further, where a left sample may stand on its own.
    forPairs(*samples_, 0, samples_->size() + 1, [&](StereoPair pair) {
        const Sides sides = sidesOf(pair);
        peak = {std::max(peak.left, std::abs(sides.left)), std::max(peak.right, std::abs(sides.right))};
    });
    return peak;
}

float WaveValues::valueOf(StereoPair pair, int display) const {
    const Sides sides = sidesOf(pair);
    if (channels_ == SoundChannels::Mono)
        return (sides.left + sides.right) / 2;
    const bool right = channels_ == SoundChannels::Right || (channels_ == SoundChannels::Stereo && display == 1);
    return right ? sides.right : sides.left;
}

std::vector<float> WaveValues::read(int display, std::size_t first, std::size_t count, std::size_t most) const {
    std::vector<float> values;
    if (!samples_) {
        values.assign(std::min(count, most), 0.0f);
        return values;
    }
    values.reserve(std::min(count, most));
    if (count <= most) {
        forPairs(*samples_, first, count, [&](StereoPair pair) { values.push_back(valueOf(pair, display)); });
        return values;
    }
    const std::size_t groups = most / 2;
    ExtremesOf extremes(values);
    std::size_t at = 0;
    std::size_t group = 0;
    forPairs(*samples_, first, count, [&](StereoPair pair) {
        extremes.add(valueOf(pair, display));
        if (++at * groups >= (group + 1) * count) {
            extremes.finish();
            ++group;
        }
    });
    return values;
}

} // namespace veldran
