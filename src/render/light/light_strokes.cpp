// A line is measured first (the least distance of each pixel to any of its segments), then lit once.
#include "render/light/light_strokes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace veldran {
namespace {

constexpr float kFar = std::numeric_limits<float>::max();
constexpr int kUnit = 64; // of a level, in the sums
constexpr float kLeastLight = 0.02f * 255;
constexpr double kThinnestCore = 0.5; // radius, pixels: just as bright between two pixels as on one

// Half a pixel to both sides of its radius: an edge, smoothed.
double coreAt(double distance, double radius) {
    return std::clamp(radius + 0.5 - distance, 0.0, 1.0);
}

// From 1 on the line to 0 at the radius, both ends flat.
double glowAt(double distance, double radius, int steepness) {
    const double part = std::min(distance / radius, 1.0);
    return std::pow(1 - part * part, steepness);
}

// The pixels of one axis that a line between two places with light around it touches: first and one beyond the last.
struct PixelRange {
    int first;
    int end;

    PixelRange(double from, double to, double reach, int length)
        : first(static_cast<int>(std::clamp(std::min(from, to) - reach, 0.0, double(length)))),
          end(static_cast<int>(std::clamp(std::ceil(std::max(from, to) + reach), 0.0, double(length)))) {}
};

} // namespace

LightProfile::LightProfile(const LightStroke& core, const LightStroke& body, const LightStroke& halo) {
    const double radius = std::max({core.radius + 0.5, body.radius, halo.radius});
    if (core.strength > 0)
        leastWidth_ = std::min(kThinnestCore / core.radius, 1.0);
    const int steps = static_cast<int>(radius * kStepsPerPixel) + 2;
    for (int i = 0; i < steps; ++i) {
        const double distance = (i + 0.5) / kStepsPerPixel;
        const double weights[3] = {core.strength * coreAt(distance, core.radius),
                                   body.strength * glowAt(distance, body.radius, 2),
                                   halo.strength * glowAt(distance, halo.radius, 3)};
        const Colour colours[3] = {core.colour, body.colour, halo.colour};
        Light light{};
        for (int stroke = 0; stroke < 3; ++stroke) {
            light[0] += static_cast<float>(weights[stroke] * blueOf(colours[stroke]));
            light[1] += static_cast<float>(weights[stroke] * greenOf(colours[stroke]));
            light[2] += static_cast<float>(weights[stroke] * redOf(colours[stroke]));
        }
        if (std::ranges::max(light) >= kLeastLight)
            reach_ = static_cast<double>(i) / kStepsPerPixel;
        else
            light = {};
        steps_.push_back(light);
    }
}

LightLayer::LightLayer(int width, int height)
    : width_(width), height_(height), distances_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
      light_(3 * distances_.size()) {}

void LightLayer::clear() {
    std::ranges::fill(light_, std::uint16_t{0});
}

void LightLayer::measureSegment(const LightPoint& from, const LightPoint& to, double reach) {
    const double widest = reach * std::max(from.width, to.width);
    const PixelRange columns(from.x, to.x, widest, width_);
    const PixelRange rows(from.y, to.y, widest, height_);
    const auto alongX = static_cast<float>(to.x - from.x);
    const auto alongY = static_cast<float>(to.y - from.y);
    const float square = alongX * alongX + alongY * alongY;
    const float perLength = square > 0 ? 1 / square : 0;
    const auto width = static_cast<float>(from.width);
    const auto widening = static_cast<float>(to.width - from.width);
    for (int y = rows.first; y < rows.end; ++y) {
        const auto toY = static_cast<float>(y + 0.5 - from.y);
        float* const distances = &distances_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_)];
        for (int x = columns.first; x < columns.end; ++x) {
            const auto toX = static_cast<float>(x + 0.5 - from.x);
            const float part = std::clamp((toX * alongX + toY * alongY) * perLength, 0.0f, 1.0f);
            const float offX = toX - part * alongX;
            const float offY = toY - part * alongY;
            const float radius = width + part * widening;
            distances[x] = std::min(distances[x], (offX * offX + offY * offY) / (radius * radius));
        }
    }
}

void LightLayer::addLine(std::span<const LightPoint> points, const LightProfile& profile, double intensity) {
    if (points.empty())
        return;
    const auto [left, right] = std::ranges::minmax(points, {}, &LightPoint::x);
    const auto [top, bottom] = std::ranges::minmax(points, {}, &LightPoint::y);
    const double reach = profile.reach();
    const PixelRange columns(left.x, right.x, reach, width_);
    const PixelRange rows(top.y, bottom.y, reach, height_);
    const auto rowStart = [this](int y) { return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_); };
    for (int y = rows.first; y < rows.end; ++y)
        std::fill(&distances_[rowStart(y)] + columns.first, &distances_[rowStart(y)] + columns.end, kFar);
    double shares = 0; // of the least width, where a point's own is less
    const auto drawn = [&](LightPoint point) {
        const double width = std::max(point.width, profile.leastWidth());
        shares += point.width / width;
        point.width = width;
        return point;
    };
    LightPoint from = drawn(points.front());
    if (points.size() == 1)
        measureSegment(from, from, reach);
    for (const LightPoint& point : points.subspan(1)) {
        const LightPoint to = drawn(point);
        measureSegment(from, to, reach);
        from = to;
    }
    const auto farthest = static_cast<float>(reach * reach);
    const auto units = static_cast<float>(intensity * kUnit * std::sqrt(shares / static_cast<double>(points.size())));
    for (int y = rows.first; y < rows.end; ++y)
        for (int x = columns.first; x < columns.end; ++x) {
            const std::size_t at = rowStart(y) + static_cast<std::size_t>(x);
            if (distances_[at] >= farthest)
                continue;
            const LightProfile::Light& light = profile.at(std::sqrt(distances_[at]));
            for (std::size_t c = 0; c < 3; ++c)
                light_[3 * at + c] = static_cast<std::uint16_t>(
                    std::min(static_cast<float>(light_[3 * at + c]) + units * light[c], 65535.0f));
        }
}

void LightLayer::shineOn(const ImageView& picture, const LightArea& area, int percent) const {
    const int left = std::max(area.left, 0);
    const int right = std::min({area.right, picture.width, width_});
    const int bottom = std::min({area.bottom, picture.height, height_});
    const std::uint32_t weight = static_cast<std::uint32_t>(percent) * 65536 / (100 * kUnit);
    for (int y = std::max(area.top, 0); y < bottom; ++y) {
        const std::uint16_t* light = &light_[3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                                                  static_cast<std::size_t>(left))];
        std::uint8_t* channel = picture.pixel(left, y);
        for (std::uint8_t* const end = channel + 3 * std::max(right - left, 0); channel != end; ++channel, ++light)
            *channel = static_cast<std::uint8_t>(std::min(*channel + ((*light * weight + 0x8000) >> 16), 255u));
    }
}

} // namespace veldran
