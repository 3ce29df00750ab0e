// A loop of stereo sound that voices are added to, and the file it ends in.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace defaults {

inline constexpr int kSamplesPerSecond = 44100;

// A ring: what rings on beyond the end is heard at the beginning, so that no seam is heard when the loop is repeated.
class Loop {
public:
    // Silence, `seconds` long.
    explicit Loop(double seconds);

    std::size_t size() const { return left_.size(); }
    double left(std::size_t i) const { return left_[i % size()]; }
    double right(std::size_t i) const { return right_[i % size()]; }

    // Adds the values that `wave(t)` gives for t from 0 to `seconds`. `pan` is -1 for left, 1 for right; a voice keeps
    // its power wherever it stands.
    template <class Wave>
    void add(double start, double seconds, double pan, Wave wave) {
        const std::size_t first = samplesIn(start);
        for (std::size_t i = 0; i < samplesIn(seconds); ++i)
            addSample(first + i, pan, wave(static_cast<double>(i) / kSamplesPerSecond));
    }

    // Adds another loop of the same length.
    void add(const Loop& other);

    // Echoes that change sides, each `delay` seconds after the one before it and `level` times as loud.
    void addEchoes(double delay, double level, int count);

private:
    static std::size_t samplesIn(double seconds) { return static_cast<std::size_t>(seconds * kSamplesPerSecond); }
    void addSample(std::size_t at, double pan, double value);

    std::vector<double> left_;
    std::vector<double> right_;
};

// The bytes of a WAV file of 16 bits with the loop in it, softly limited and as loud as a good recording.
std::string waveFile(const Loop& loop);

} // namespace defaults
