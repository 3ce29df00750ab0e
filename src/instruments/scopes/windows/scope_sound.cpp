// The block of a sound is locked once for all frames.
#include "instruments/scopes/windows/scope_sound.h"

namespace veldran {

ScopeSound::ScopeSound(const SoundFrames& frames) {
    if (frames.sound)
        locked_ = LockedBlock(frames.sound->wave.block.get());
    if (locked_) {
        wave_.emplace(formatOf(locked_), samplesOf(locked_, frames.sound->wave.dataBytes), frames.channels,
                      frames.scale);
        return;
    }
    demonstration_ = demonstrationSamples();
    wave_.emplace(demonstrationFormat(), demonstration_, frames.channels, SoundScale::Raw);
}

} // namespace veldran
