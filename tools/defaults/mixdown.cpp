// Pan by equal power; limit by the hyperbolic tangent, which leaves quiet passages as they are.
#include "defaults/mixdown.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace defaults {
namespace {

constexpr double kDrive = 1.3;  // how far the loudest moment reaches into the limiter
constexpr double kPeak = 29000; // of 32767

std::string little(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i));
    return text;
}

std::string chunk(const std::string& name, const std::string& body) {
    return name + little(static_cast<std::uint32_t>(body.size()), 4) + body;
}

} // namespace

Loop::Loop(double seconds) : left_(samplesIn(seconds)), right_(samplesIn(seconds)) {}

void Loop::addSample(std::size_t at, double pan, double value) {
    const double angle = (pan + 1) * std::numbers::pi / 4;
    left_[at % size()] += value * std::cos(angle);
    right_[at % size()] += value * std::sin(angle);
}

void Loop::add(const Loop& other) {
    for (std::size_t i = 0; i < size(); ++i) {
        left_[i] += other.left_[i];
        right_[i] += other.right_[i];
    }
}

void Loop::addEchoes(double delay, double level, int count) {
    const Loop dry = *this;
    double gain = 1;
    for (int echo = 1; echo <= count; ++echo) {
        gain *= level;
        const std::size_t back = size() - samplesIn(echo * delay) % size();
        for (std::size_t i = 0; i < size(); ++i) {
            const double left = dry.left(i + back);
            const double right = dry.right(i + back);
            left_[i] += gain * (echo % 2 == 0 ? left : right);
            right_[i] += gain * (echo % 2 == 0 ? right : left);
        }
    }
}

std::string waveFile(const Loop& loop) {
    double loudest = 0;
    for (std::size_t i = 0; i < loop.size(); ++i)
        loudest = std::max({loudest, std::abs(loop.left(i)), std::abs(loop.right(i))});
    const auto limited = [&](double value) {
        const double size = std::tanh(value * kDrive / loudest) / std::tanh(kDrive);
        return little(static_cast<std::uint32_t>(std::lround(kPeak * size)), 2);
    };
    std::string samples;
    for (std::size_t i = 0; i < loop.size(); ++i)
        samples += limited(loop.left(i)) + limited(loop.right(i));
    const std::string format = little(1, 2) + little(2, 2) + little(kSamplesPerSecond, 4) +
                               little(4 * kSamplesPerSecond, 4) + little(4, 2) + little(16, 2);
    return chunk("RIFF", "WAVE" + chunk("fmt ", format) + chunk("data", samples));
}

} // namespace defaults
