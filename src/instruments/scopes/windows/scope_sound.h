// The samples behind an animation whose frames draw a wave: those of its sound, or a demonstration without one.
#pragma once

#include "instruments/scopes/scope_wave.h"
#include "instruments/windows/sound_frames.h"

namespace veldran {

class ScopeSound {
public:
    // Keeps the sound's block locked; `frames` must outlive this. Throws std::bad_alloc.
    explicit ScopeSound(const SoundFrames& frames);

    const WaveValues& wave() const { return *wave_; }

private:
    LockedBlock locked_;
    std::vector<std::uint8_t> demonstration_;
    std::optional<WaveValues> wave_;
};

} // namespace veldran
