// How the wave of a sound lies on the screen of an oscilloscope. Core: draws light, knows no windows.
#pragma once

#include "render/light/beam.h"
#include "sound/wave_values.h"

namespace veldran {

// Displays share the screen, one above the other. Pixels of the light.
struct WaveLane {
    float middle; // where silence lies
    float reach;  // how far full scale lies above and below
};

WaveLane waveLane(int height, int display, int displays);

// As many values as a column of the screen has room for; more would only take time.
inline constexpr std::size_t kValuesPerColumn = 16;

// Writes the moments from `first` on over the whole width, on all displays. A level line has the light `exposure` where
// full scale is 28 pixels, and more where it is larger: a picture looks alike in all sizes.
void writeWave(BeamLight& light, const WaveValues& wave, SoundChannels channels, std::size_t first, std::size_t count,
               float exposure);

// The moment of the sound with which a column begins.
constexpr std::size_t momentOf(std::size_t moments, std::size_t part, std::size_t parts) {
    return static_cast<std::size_t>(static_cast<unsigned long long>(moments) * part / parts);
}

// A sound to show the instrument with when there is none: a stereo pair of 16 bits a moment, two tones that swell.
WaveFormat demonstrationFormat();
std::vector<std::uint8_t> demonstrationSamples();

} // namespace veldran
