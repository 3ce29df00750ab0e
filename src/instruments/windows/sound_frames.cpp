// Controls and a file in, levels out.
#include "instruments/windows/sound_frames.h"

#include "instruments/real_time.h"
#include "settings/windows/parameter_reader.h"

#include <algorithm>

namespace veldran {

std::uint32_t SoundFrames::matchedDelay(const HostParams* host) const {
    const std::uint32_t unitMilliseconds = 1000 / secondInHostUnit(delayUnitOf(host));
    return veldran::matchedDelay(sound->analysis.playingMilliseconds, sound->analysis.frames, unitMilliseconds);
}

int SoundFrames::level(int display, int frame) const {
    return sound ? shownLevel(sound->analysis.levels, channels, display, static_cast<std::size_t>(frame)) : 0;
}

SoundFrames readSoundFrames(HWND dialog, const SoundControls& controls, int frames, SoundMeasure measure) {
    const int channels = std::clamp(readChoicePosition(dialog, controls.channels), 0, 3);
    const SoundScale scale = isChecked(dialog, controls.normalise) ? SoundScale::Normalised : SoundScale::Raw;
    return {static_cast<SoundChannels>(channels), scale,
            measureSoundFile(readText(dialog, controls.sound), static_cast<std::uint32_t>(std::max(frames, 1)), measure,
                             scale)};
}

} // namespace veldran
