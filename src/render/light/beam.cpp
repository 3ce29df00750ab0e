// Lines are sampled a pixel apart; each sample falls on the four pixels around it.
#include "render/light/beam.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace veldran {
namespace {

constexpr Colour kWhite = 0xFFFFFF;

// Brightness is a root of the light, as the eye has it: a beam a hundred times as quick is still seen. Chosen by eye.
constexpr float kBrightest = 2;      // brightness that the last colour stands for
constexpr double kDensity = 3;       // how soon the trace covers the screen: 95 % at brightness 1
constexpr double kHotFrom = 0.75;    // brightness at which the core begins to turn white
constexpr double kHotPerUnit = 0.55; // share of white that a unit of brightness above that adds
constexpr std::size_t kShades = 256;

using Shades = std::array<Colour, kShades>;

constexpr int sumOf(Colour colour) {
    return redOf(colour) + greenOf(colour) + blueOf(colour);
}

// What the beam's colour turns to where it is brightest. White is no light on a screen that is brighter than the trace.
constexpr Colour coreOf(Colour screen, Colour trace) {
    return sumOf(trace) >= sumOf(screen) ? kWhite : trace;
}

int weightOf(double share) {
    return static_cast<int>(std::clamp(share, 0.0, 1.0) * 255 + 0.5);
}

Shades shadesOf(Colour screen, Colour trace) {
    const Colour core = coreOf(screen, trace);
    Shades shades;
    for (std::size_t i = 0; i < kShades; ++i) {
        const double brightness = static_cast<double>(i) * kBrightest / (kShades - 1);
        const int cover = weightOf((1 - std::exp(-kDensity * brightness)) / (1 - std::exp(-kDensity * kBrightest)));
        const int hot = weightOf((brightness - kHotFrom) * kHotPerUnit);
        shades[i] = mixColours(mixColours(screen, trace, cover), core, hot);
    }
    return shades;
}

void setPixel(std::uint8_t* pixel, Colour colour) {
    pixel[0] = static_cast<std::uint8_t>(blueOf(colour));
    pixel[1] = static_cast<std::uint8_t>(greenOf(colour));
    pixel[2] = static_cast<std::uint8_t>(redOf(colour));
}

Colour colourOf(const std::uint8_t* pixel) {
    return makeColour(pixel[2], pixel[1], pixel[0]);
}

} // namespace

BeamLight::BeamLight(int width, int height)
    : width_(std::max(width, 0)), height_(std::max(height, 0)),
      light_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_)) {}

void BeamLight::clear() {
    std::ranges::fill(light_, 0.0f);
}

void BeamLight::add(float x, float y, float light) {
    const float left = std::floor(x);
    const float top = std::floor(y);
    if (!(left >= 0 && top >= 0 && left < static_cast<float>(width_) && top < static_cast<float>(height_)))
        return;
    const int column = static_cast<int>(left);
    const int row = static_cast<int>(top);
    const float right = light * (x - left);
    const float below = y - top;
    float* at =
        &light_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(column)];
    const auto addRow = [&](float* pixel, float share) {
        pixel[0] += (light - right) * share;
        if (column + 1 < width_)
            pixel[1] += right * share;
    };
    addRow(at, 1 - below);
    if (row + 1 < height_)
        addRow(at + width_, below);
}

void BeamLight::write(std::span<const BeamPoint> path, float perLine) {
    for (std::size_t i = 1; i < path.size(); ++i) {
        const float dx = path[i].x - path[i - 1].x;
        const float dy = path[i].y - path[i - 1].y;
        const int steps = std::max(static_cast<int>(std::ceil(std::max(std::abs(dx), std::abs(dy)))), 1);
        const float part = 1 / static_cast<float>(steps);
        for (int step = 0; step < steps; ++step) {
            const float t = (static_cast<float>(step) + 0.5f) * part;
            add(path[i - 1].x + dx * t, path[i - 1].y + dy * t, perLine * part);
        }
    }
}

void BeamLight::widen() {
    // Weights 1 2 1 each way. Twice their mean, so that the middle of a line keeps its light.
    std::vector<float> wide(light_.size());
    const auto columns = static_cast<std::size_t>(width_);
    for (std::size_t y = 0; y < static_cast<std::size_t>(height_); ++y) {
        const float* row = &light_[y * columns];
        const float* above = y > 0 ? row - columns : row;
        const float* below = y + 1 < static_cast<std::size_t>(height_) ? row + columns : row;
        for (std::size_t x = 0; x < columns; ++x)
            wide[y * columns + x] = 0.5f * (above[x] + below[x]) + row[x];
    }
    for (std::size_t y = 0; y < static_cast<std::size_t>(height_); ++y) {
        const float* row = &wide[y * columns];
        for (std::size_t x = 0; x < columns; ++x)
            light_[y * columns + x] =
                0.25f * (row[x > 0 ? x - 1 : x] + row[x + 1 < columns ? x + 1 : x]) + 0.5f * row[x];
    }
}

void BeamLight::show(const ImageView& picture, int left, int top, Colour screen, Colour trace,
                     std::span<const std::uint8_t> columns) const {
    const Shades shades = shadesOf(screen, trace);
    constexpr float kScale = (kShades - 1) / kBrightest;
    for (int y = std::max(0, -top); y < std::min(height_, picture.height - top); ++y) {
        const float* row = &light_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_)];
        for (int x = std::max(0, -left); x < std::min(width_, picture.width - left); ++x) {
            const int weight = columns[static_cast<std::size_t>(x)];
            if (row[x] <= 0 || weight == 0)
                continue;
            const auto shade = static_cast<std::size_t>(std::min(std::sqrt(row[x]), kBrightest) * kScale + 0.5f);
            setPixel(picture.pixel(left + x, top + y), mixColours(screen, shades[shade], weight));
        }
    }
}

void drawBeamSpot(const ImageView& picture, BeamPoint at, float radius, Colour screen, Colour trace) {
    const Colour core = coreOf(screen, trace);
    const float reach = 3 * radius;
    const auto first = [&](float middle) { return std::max(0, static_cast<int>(std::ceil(middle - reach))); };
    const auto last = [&](float middle, int end) {
        return std::min(end - 1, static_cast<int>(std::floor(middle + reach)));
    };
    for (int y = first(at.y); y <= last(at.y, picture.height); ++y)
        for (int x = first(at.x); x <= last(at.x, picture.width); ++x) {
            const double distance = std::hypot(static_cast<float>(x) - at.x, static_cast<float>(y) - at.y) / radius;
            const double fall = std::max(0.0, 1 - distance / 3);
            std::uint8_t* pixel = picture.pixel(x, y);
            const Colour lit = mixColours(colourOf(pixel), trace, weightOf(fall * fall));
            setPixel(pixel, mixColours(lit, core, weightOf(1.6 - distance)));
        }
}

} // namespace veldran
