// The wave of a sound as a line of values, for those who draw it. Core: knows no files.
#pragma once

#include "sound/sound_analysis.h"
#include "sound/stereo_samples.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace veldran {

// A view of the samples; the bytes must outlive it. A sound of more than two channels, or of none, is silent.
class WaveValues {
public:
    // With SoundScale::Normalised each side reaches full scale where it is loudest; a silent one stays silent.
    WaveValues(const WaveFormat& format, std::span<const std::uint8_t> samples, SoundChannels channels,
               SoundScale scale);

    // Moments of the sound: pairs of samples.
    std::size_t size() const { return samples_ ? samples_->size() : 0; }

    // The values of `count` moments from `first` on, -1 to 1, on the display with that number. No more than `most` (at
    // least 2) of them: of longer stretches the smallest and the largest value of every so many, in the order in which
    // they come, so that no peak is lost. Moments beyond the end are silent. Empty when `count` is 0.
    std::vector<float> read(int display, std::size_t first, std::size_t count, std::size_t most) const;

private:
    struct Sides {
        float left;
        float right;
    };
    Sides sidesOf(StereoPair pair) const;
    Sides loudest() const;
    float valueOf(StereoPair pair, int display) const;

    std::optional<StereoSamples> samples_;
    SoundChannels channels_;
    bool bytes_ = false; // samples of 8 bits
    Sides gain_{1, 1};
};

} // namespace veldran
