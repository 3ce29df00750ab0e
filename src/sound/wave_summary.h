// What a person is told about a sound: channels, sample rate and playing time, in words. Core: knows figures, no files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace veldran {

// The format record of a PCM sound as it stands in a RIFF/WAVE file; a block of sound begins with it.
struct WaveFormat {
    std::uint16_t tag; // 1: PCM
    std::uint16_t channels;
    std::uint32_t samplesPerSecond; // sample frames, whatever the number of channels
    std::uint32_t averageBytesPerSecond;
    std::uint16_t blockAlignment; // bytes of a sample frame, all channels
    std::uint16_t bitsPerSample;  // of one channel; 0 when the file does not say
};
static_assert(sizeof(WaveFormat) == 16);

inline constexpr std::uint16_t kPcmTag = 1;

// Playing time in hundredths of a second, rounded down. 0 when the format has no size or no rate.
std::uint64_t playingHundredths(const WaveFormat& format, std::size_t dataBytes);

// The same in milliseconds.
std::uint64_t playingMilliseconds(const WaveFormat& format, std::size_t dataBytes);

// "Stereo, 44.1 kHz, 01:15.50"
std::string waveFigures(const WaveFormat& format, std::size_t dataBytes);

// The same on lines with names, below the name of the file.
std::string waveSummary(std::string_view fileName, const WaveFormat& format, std::size_t dataBytes);

} // namespace veldran
