// What instruments that are driven by a sound share: the measured sound of an animation, its frames and their delays.
#pragma once

#include "instruments/windows/frame_loop.h"
#include "sound/windows/sound_file.h"

namespace veldran {

// Identities of the controls that such an instrument has.
struct SoundControls {
    int channels;
    int sound;
    int normalise;
};

struct SoundFrames {
    SoundChannels channels;
    SoundScale scale;
    std::optional<MeasuredSound> sound; // none when the file cannot be read or measured

    // 0 without a sound: only the representative frame can be drawn then.
    int frames() const { return sound ? static_cast<int>(sound->analysis.frames) : 0; }

    // How long a frame is shown for the animation to last as long as its sound; `frames()` is not 0.
    std::uint32_t matchedDelay(const HostParams* host) const;

    // 0 to 255, on the display with that number; 0 without a sound.
    int level(int display, int frame) const;
};

// Measures the sound for `frames` frames, 1 and more. Throws std::bad_alloc.
SoundFrames readSoundFrames(HWND dialog, const SoundControls& controls, int frames, SoundMeasure measure);

} // namespace veldran
