// Bytes and formats of sounds, for tests of what is read from them.
#pragma once

#include "sound/wave_summary.h"

#include <cstdint>
#include <vector>

namespace veldran {

using Bytes = std::vector<std::uint8_t>;

inline WaveFormat pcm(int channels, int bits, std::uint32_t rate = 44100) {
    const auto alignment = static_cast<std::uint16_t>(channels * bits / 8);
    return {kPcmTag,   static_cast<std::uint16_t>(channels), rate, rate * alignment,
            alignment, static_cast<std::uint16_t>(bits)};
}

// Samples of 16 bits.
inline Bytes words(const std::vector<int>& values) {
    Bytes bytes;
    for (const int value : values) {
        bytes.push_back(static_cast<std::uint8_t>(value));
        bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    }
    return bytes;
}

} // namespace veldran
