// From values to the points of a beam's path.
#include "instruments/scopes/scope_wave.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace veldran {
namespace {

constexpr float kLaneShare = 0.94f; // of its lane that a full wave takes
constexpr float kPlainReach = 28;   // for which exposures are made; larger waves are written more quickly
constexpr int kDemonstrationMoments = 1200;
constexpr double kLoudest = 30000;

// Three swells of a tone with an overtone.
double demonstration(double turn, double tone) {
    const double swell = 0.15 + 0.85 * std::pow(std::sin(3 * std::numbers::pi * turn), 2) * (1 - 0.5 * turn);
    const double angle = 2 * std::numbers::pi * tone * turn;
    return swell * (0.72 * std::sin(angle) + 0.28 * std::sin(2.5 * angle));
}

void appendSample(std::vector<std::uint8_t>& bytes, double value) {
    const int sample = static_cast<int>(value * kLoudest);
    bytes.push_back(static_cast<std::uint8_t>(sample));
    bytes.push_back(static_cast<std::uint8_t>(sample >> 8));
}

} // namespace

WaveLane waveLane(int height, int display, int displays) {
    const float lane = static_cast<float>(height) / static_cast<float>(displays);
    return {lane * (static_cast<float>(display) + 0.5f) - 0.5f, lane / 2 * kLaneShare};
}

void writeWave(BeamLight& light, const WaveValues& wave, SoundChannels channels, std::size_t first, std::size_t count,
               float exposure) {
    const int displays = soundDisplays(channels);
    for (int display = 0; display < displays; ++display) {
        std::vector<float> values =
            wave.read(display, first, count, kValuesPerColumn * static_cast<std::size_t>(std::max(light.width(), 1)));
        if (values.size() < 2) // the wave of a moment is a level line
            values.assign(2, values.empty() ? 0.0f : values.front());
        const WaveLane lane = waveLane(light.height(), display, displays);
        const float step = static_cast<float>(light.width() - 1) / static_cast<float>(values.size() - 1);
        std::vector<BeamPoint> path;
        path.reserve(values.size());
        for (std::size_t i = 0; i < values.size(); ++i)
            path.push_back({static_cast<float>(i) * step, lane.middle - values[i] * lane.reach});
        light.write(path, step * exposure * lane.reach / kPlainReach);
    }
}

WaveFormat demonstrationFormat() {
    return {kPcmTag, 2, kDemonstrationMoments, 4 * kDemonstrationMoments, 4, 16};
}

std::vector<std::uint8_t> demonstrationSamples() {
    std::vector<std::uint8_t> bytes;
    for (int i = 0; i < kDemonstrationMoments; ++i) {
        const double turn = static_cast<double>(i) / kDemonstrationMoments;
        appendSample(bytes, demonstration(turn, 12));
        appendSample(bytes, demonstration(turn, 18));
    }
    return bytes;
}

} // namespace veldran
