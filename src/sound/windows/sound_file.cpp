// The file's block stays locked only while it is measured.
#include "sound/windows/sound_file.h"

#include "base/windows/wait_cursor.h"

#include <cstring>

namespace veldran {

std::optional<MeasuredSound> measureSoundFile(const std::string& path, std::uint32_t frames, SoundMeasure measure,
                                              SoundScale scale) {
    const WaitCursor cursor;
    MeasuredSound sound{readWaveFile(path), {}};
    const LockedBlock locked(sound.wave.block.get());
    if (!locked)
        return std::nullopt;
    std::optional<SoundAnalysis> analysis =
        analyseSound(formatOf(locked), samplesOf(locked, sound.wave.dataBytes), frames, measure, scale);
    if (!analysis)
        return std::nullopt;
    sound.analysis = std::move(*analysis);
    return sound;
}

WaveFormat formatOf(const LockedBlock& sound) {
    WaveFormat format;
    std::memcpy(&format, sound.data(), sizeof format);
    return format;
}

std::span<const std::uint8_t> samplesOf(const LockedBlock& sound, std::uint32_t dataBytes) {
    return sound.bytes().subspan(sizeof(WaveFormat), dataBytes);
}

} // namespace veldran
