// The samples of a PCM sound as pairs of 16 bits, read where they lie, whatever the file stores. Core: knows no files.
#pragma once

#include "sound/wave_summary.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace veldran {

enum class SampleLayout { Mono8, Stereo8, Mono16, Stereo16 };

// How the samples lie, going by channels and bits alone; nothing for any other number of either.
std::optional<SampleLayout> sampleLayout(const WaveFormat& format);

constexpr bool isStereo(SampleLayout layout) {
    return layout == SampleLayout::Stereo8 || layout == SampleLayout::Stereo16;
}

constexpr bool has16Bits(SampleLayout layout) {
    return layout == SampleLayout::Mono16 || layout == SampleLayout::Stereo16;
}

// Bytes from one sample to the next of its channel. The file's own block alignment is not asked: it may be anything.
constexpr std::size_t sampleStride(SampleLayout layout) {
    return (isStereo(layout) ? 2 : 1) * (has16Bits(layout) ? sizeof(std::int16_t) : 1);
}

// The value of a byte that stands for silence. Not 128: a byte of 255 then measures a little more than full scale.
inline constexpr int kByteMidpoint = 127;

// Both channels of one moment.
struct StereoPair {
    std::int16_t left = 0;
    std::int16_t right = 0;
};

// A view; the bytes must outlive it.
class StereoSamples {
public:
    StereoSamples(SampleLayout layout, std::span<const std::uint8_t> bytes) : layout_(layout), bytes_(bytes) {}

    // Whole pairs.
    std::size_t size() const { return bytes_.size() / sampleStride(layout_); }

    // Fills `to` with the pairs from `first` on; what lies beyond the data is 0. One channel is given to both sides. A
    // byte b becomes (b - 127) * 256 in 16 bits, where 255 wraps round to -32768.
    void read(std::size_t first, std::span<StereoPair> to) const;

private:
    SampleLayout layout_;
    std::span<const std::uint8_t> bytes_;
};

// The format record of the same sound once it is stored as pairs of 16 bits. Only a block's alignment is doubled, so
// that of a byte a sample becomes 2 where it should be 4, and its playing time with it: files have been timed by it for
// long, and delays that follow a sound keep their length.
WaveFormat stereoFormat(const WaveFormat& format);

} // namespace veldran
