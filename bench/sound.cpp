// Peaks and bands of noise, of a sound that ends early, and of one whose bands are too loud for 16 bits.
#include "bench.h"

#include "sound/sound_analysis.h"

#include <cstring>
#include <memory>
#include <random>

namespace veldran::bench {
namespace {

constexpr std::uint32_t kRate = 44100;
constexpr std::uint32_t kFrames = 128;

using Sound = std::shared_ptr<std::vector<std::uint8_t>>;

// Pairs of words whose samples `wave(i)` gives.
template <class Wave>
Sound stereo(std::size_t pairs, Wave wave) {
    Sound sound = std::make_shared<std::vector<std::uint8_t>>(pairs * sizeof(StereoPair));
    for (std::size_t i = 0; i < 2 * pairs; ++i) {
        const auto value = static_cast<std::int16_t>(wave(i));
        std::memcpy(sound->data() + i * sizeof value, &value, sizeof value);
    }
    return sound;
}

Stage measuring(const std::string& name, const Sound& sound, SoundMeasure measure, std::uint32_t frames) {
    const WaveFormat format{kPcmTag, 2, kRate, kRate * sizeof(StereoPair), sizeof(StereoPair), 16};
    return {name, static_cast<double>(sound->size()) / sizeof(StereoPair), static_cast<double>(sound->size()),
            static_cast<int>(frames),
            [=] { static_cast<void>(analyseSound(format, *sound, frames, measure, SoundScale::Normalised)); }};
}

std::vector<Stage> stages(std::size_t pairs) {
    std::mt19937 random(1);
    const auto noise = [&](std::size_t) { return static_cast<int>(random() % 20000) - 10000; };
    const Sound hiss = stereo(pairs, noise);
    const Sound click = stereo(pairs, [&](std::size_t i) { return i < 1000 ? noise(i) : 0; });
    const Sound square = stereo(pairs, [](std::size_t i) { return i / 700 % 2 == 0 ? 32767 : -32767; });
    return {
        measuring("levels", hiss, SoundMeasure::Levels, kFrames),
        measuring("bands", hiss, SoundMeasure::Spectrum, kFrames),
        measuring("bands, most frames", hiss, SoundMeasure::Spectrum, 32760),
        measuring("bands, a click and silence", click, SoundMeasure::Spectrum, kFrames),
        measuring("bands, too loud", square, SoundMeasure::Spectrum, kFrames),
    };
}

} // namespace

// Stereo pairs stand for pixels: milliseconds per million are nanoseconds per pair.
void benchSound() {
    printTable("Sound: 60 seconds", stages(60 * kRate));
}

} // namespace veldran::bench
