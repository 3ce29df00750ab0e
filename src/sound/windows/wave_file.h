// Reads PCM sounds from RIFF/WAVE files. Shows no messages: a file that cannot be read is an empty result.
#pragma once

#include "base/windows/global_block.h"
#include "sound/wave_summary.h"

#include <cstdint>
#include <optional>
#include <string>

namespace veldran {

// A sound in memory is a movable block: a WaveFormat, behind it the samples as the file stores them.
struct WaveSound {
    GlobalBlock block;
    std::uint32_t dataBytes = 0; // of the samples; the block may be a few bytes larger than these and the format

    explicit operator bool() const { return static_cast<bool>(block); }
};

struct WaveHeader {
    WaveFormat format;
    std::uint32_t dataBytes; // what the file promises; it may hold less
};

// The whole sound; empty when the file is missing or damaged, is not PCM, or memory is short. The numbers of channels
// and bits are taken as they come: a format record that ends early leaves the rest 0.
WaveSound readWaveFile(std::string path);

// The figures alone, without the samples.
std::optional<WaveHeader> readWaveHeader(std::string path);

} // namespace veldran
