// Each pixel is averaged from several points. A strip that is uncovered from the left gets brighter with every step,
// and reads even when it is only a few pixels high.
#include "defaults/picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace defaults {
namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 64;
constexpr int kPoints = 3; // across and down in each pixel

struct Light {
    double red, green, blue; // 0 to 1

    Light operator*(double by) const { return {red * by, green * by, blue * by}; }
    Light operator+(const Light& other) const { return {red + other.red, green + other.green, blue + other.blue}; }
};

Light mix(const Light& from, const Light& to, double share) {
    return from * (1 - share) + to * share;
}

struct Stop {
    double at; // 0 to 1
    Light colour;
};

template <std::size_t kCount>
Light gradient(const std::array<Stop, kCount>& stops, double at) {
    std::size_t i = 1;
    while (i + 1 < kCount && at > stops[i].at)
        ++i;
    const double share = (at - stops[i - 1].at) / (stops[i].at - stops[i - 1].at);
    return mix(stops[i - 1].colour, stops[i].colour, std::clamp(share, 0.0, 1.0));
}

// From left to right at the horizon and at the zenith.
constexpr std::array<Stop, 6> kHorizon = {{{0.0, {0.07, 0.09, 0.26}},
                                           {0.25, {0.28, 0.15, 0.45}},
                                           {0.45, {0.75, 0.25, 0.45}},
                                           {0.65, {0.98, 0.50, 0.25}},
                                           {0.82, {1.00, 0.80, 0.38}},
                                           {1.0, {1.00, 0.93, 0.70}}}};
constexpr std::array<Stop, 5> kZenith = {{{0.0, {0.02, 0.03, 0.12}},
                                          {0.3, {0.10, 0.09, 0.32}},
                                          {0.55, {0.42, 0.20, 0.48}},
                                          {0.8, {0.85, 0.52, 0.45}},
                                          {1.0, {0.62, 0.78, 0.92}}}};

constexpr double kSunX = 0.82 * kWidth;
constexpr double kSunY = 0.52 * kHeight;
constexpr double kSunRadius = 13;

// How high the hills of one range stand at `x`, in pixels from the bottom.
double ridge(double x, double base, double size, double phase) {
    return base +
           size * (std::sin(x / 61 + phase) + 0.6 * std::sin(x / 27 + 2 * phase) + 0.25 * std::sin(x / 11 + phase));
}

Light sky(double x, double y) {
    const double across = x / kWidth;
    const Light plain = mix(gradient(kZenith, across), gradient(kHorizon, across), std::pow(y / kHeight, 0.8));
    const double distance = std::hypot(x - kSunX, y - kSunY);
    const Light glow{1.0, 0.85, 0.5};
    const Light haze = mix(plain, glow, 0.75 * std::exp(-distance / 45));
    const Light disc{1.0, 0.98, 0.86};
    return distance < kSunRadius ? disc : haze;
}

Light scene(double x, double y) {
    const double height = kHeight - y;
    const Light near = mix({0.03, 0.03, 0.09}, {0.22, 0.12, 0.14}, x / kWidth);
    if (height < ridge(x, 8, 3, 0.4))
        return near;
    if (height < ridge(x, 16, 4, 2.1))
        return mix(near, gradient(kHorizon, x / kWidth), 0.4);
    return sky(x, y);
}

struct Star {
    double x, y, brightness;
};

// On the night side alone, dimmer towards the day.
std::vector<Star> stars() {
    std::mt19937 random(5);
    const auto next = [&] { return static_cast<double>(random()) / static_cast<double>(std::mt19937::max()); };
    std::vector<Star> all;
    for (int i = 0; i < 90; ++i) {
        const double across = next() * next() * 0.5;
        const double down = next() * 0.6;
        all.push_back({across * kWidth, down * kHeight, (0.5 - across) * 2 * (0.4 + 0.6 * next())});
    }
    return all;
}

Light starlight(const std::vector<Star>& all, double x, double y) {
    double light = 0;
    for (const Star& star : all)
        light += star.brightness * std::exp(-2 * (std::pow(x - star.x, 2) + std::pow(y - star.y, 2)));
    return Light{1, 1, 1} * light;
}

std::uint8_t byteOf(double light) {
    return static_cast<std::uint8_t>(std::lround(255 * std::clamp(light, 0.0, 1.0)));
}

} // namespace

std::string sunrise() {
    const std::vector<Star> night = stars();
    std::string file = "P6\n" + std::to_string(kWidth) + " " + std::to_string(kHeight) + "\n255\n";
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            Light sum = starlight(night, x + 0.5, y + 0.5);
            for (int row = 0; row < kPoints; ++row)
                for (int column = 0; column < kPoints; ++column)
                    sum = sum +
                          scene(x + (column + 0.5) / kPoints, y + (row + 0.5) / kPoints) * (1.0 / (kPoints * kPoints));
            for (const double light : {sum.red, sum.green, sum.blue})
                file += static_cast<char>(byteOf(light));
        }
    return file;
}

} // namespace defaults
