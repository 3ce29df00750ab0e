// A sound file measured for an animation. Shows the hourglass and no messages.
#pragma once

#include "sound/sound_analysis.h"
#include "sound/windows/wave_file.h"

#include <optional>
#include <string>

namespace veldran {

struct MeasuredSound {
    WaveSound wave; // for those who draw the wave itself
    SoundAnalysis analysis;
};

// Nothing when the file cannot be read or its kind of sound not measured (analyseSound). Throws std::bad_alloc.
std::optional<MeasuredSound> measureSoundFile(const std::string& path, std::uint32_t frames, SoundMeasure measure,
                                              SoundScale scale);

// The format and the samples of a sound whose block is locked.
WaveFormat formatOf(const LockedBlock& sound);
std::span<const std::uint8_t> samplesOf(const LockedBlock& sound, std::uint32_t dataBytes);

} // namespace veldran
