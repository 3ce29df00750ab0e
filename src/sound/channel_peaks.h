// The loudest sample of each channel in a stretch of sound. Core: knows no files.
#pragma once

#include "sound/stereo_samples.h"

namespace veldran {

struct ChannelPeaks {
    std::int32_t left = 0;
    std::int32_t right = 0;

    // Raises each side to the other's where that is louder.
    void raise(const ChannelPeaks& other);
};

// The peaks of `bytes`, samples as the file stores them from the first channel on: 0 to 256 for samples of 8 bits
// (twice the distance from the midpoint), 0 to 128 for 16 bits (the value's size over 256, rounded down). One channel
// counts for both sides; nothing gives 0.
ChannelPeaks channelPeaks(SampleLayout layout, std::span<const std::uint8_t> bytes);

} // namespace veldran
