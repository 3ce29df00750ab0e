// What a sound does in each frame of an animation: its level, or its levels in ten bands. Core: knows no files.
#pragma once

#include "sound/band_bank.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace veldran {

// One number a frame and channel: a peak, 0 to 256, or 0 to 255 where the sound was normalised. A silent channel of a
// normalised sound has kSilentLevel throughout.
struct ChannelLevels {
    std::vector<std::int32_t> left;
    std::vector<std::int32_t> right; // the same as left for a sound of one channel
    std::vector<std::int32_t> mono;  // half the sum of both
};

// What 0 times infinity becomes as a whole number on this processor family: silence cannot be amplified.
inline constexpr std::int32_t kSilentLevel = INT32_MIN;

enum class SoundMeasure { Levels, Spectrum };
enum class SoundScale { Raw, Normalised };

struct SoundAnalysis {
    std::uint32_t frames = 0;             // as many as were asked for
    std::int32_t playingMilliseconds = 0; // rounded down
    ChannelLevels levels;                 // an element a frame; empty for a spectrum
    // Empty for levels. One element more than there are frames: the sound is cut into that many slices, and the last
    // one is not shown.
    std::array<ChannelLevels, kBands.size()> bands;
};

// Cuts the sound into as many slices as there are frames and measures each. Nothing when `frames` is 0, when the sound
// is not PCM of 8 or 16 bits, or for a spectrum when it has more than two channels. Throws std::bad_alloc.
//
// Levels: a sound with another number of channels than one or two measures 0. Slices of 16 bits on one channel are
// twice as many samples long as there are frames, however long the sound is; what lies beyond its end is silence.
// Normalising multiplies by 255 / largest + 0.5, so that loud passages reach full scale a little early.
//
// Spectrum: the data's length is taken for that of 16 bits on two channels, so that of any other sound only the first
// half is measured, or quarter when it has neither, and its playing time is half. Slices begin four pairs late; as many
// at the end are not filtered any more. Normalising takes the largest level of all bands and leaves `mono` alone.
std::optional<SoundAnalysis> analyseSound(const WaveFormat& format, std::span<const std::uint8_t> samples,
                                          std::uint32_t frames, SoundMeasure measure, SoundScale scale);

// The channels that an instrument shows, in the order of its choices.
enum class SoundChannels { Stereo, Left, Right, Mono };

// How many displays, one beside the other, show them.
constexpr int soundDisplays(SoundChannels channels) {
    return channels == SoundChannels::Stereo ? 2 : 1;
}

// The level of `frame` on the display with that number, 0 to 255; 0 for a frame beyond the last.
int shownLevel(const ChannelLevels& levels, SoundChannels channels, int display, std::size_t frame);

// How long each frame is shown for the animation to last as long as the sound: at least 1, in units of
// `unitMilliseconds` (10 or 1). `frames` is not 0.
std::uint32_t matchedDelay(std::int32_t playingMilliseconds, std::uint32_t frames, std::uint32_t unitMilliseconds);

} // namespace veldran
