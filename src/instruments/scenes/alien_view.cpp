// The sky is drawn first, haze below its horizon, sunlit around the sun. Each column of the picture is a fan of rays in
// one plane: walking outwards, land that rises above what has been drawn fills the column further up, seen through as
// much of that haze as its distance makes it.
#include "instruments/scenes/alien_view.h"

#include <algorithm>
#include <cmath>

namespace veldran {
namespace {

constexpr double kNearest = 4.5; // cells
constexpr double kFarthest = 190;
constexpr double kWidthAtOne = 1.15;  // cells across the picture at a distance of 1
constexpr double kHorizon = 0.36;     // of the height, from the top
constexpr double kSunColumn = 0.27;   // of the width
constexpr double kSunHeight = 0.105;  // of the height, above the horizon
constexpr double kSunRadius = 0.045;  // of the height
constexpr double kHaloRadii = 9;      // of the sun
constexpr double kFinestDetail = 1.5; // pixels

constexpr Colour kSunlight = 0x90CCFF; // a pale orange
constexpr Colour kDusk = 0x55222A;     // a dark violet

void writeColour(std::uint8_t* pixel, Colour colour) {
    pixel[0] = static_cast<std::uint8_t>(blueOf(colour));
    pixel[1] = static_cast<std::uint8_t>(greenOf(colour));
    pixel[2] = static_cast<std::uint8_t>(redOf(colour));
}

} // namespace

AlienSky skyOver(const TerrainCurves& curves) {
    const Colour heights = landColour(curves, 0.8);
    const Colour haze = mixColours(heights, kSunlight, 140);
    return {mixColours(kDusk, scaleColour(heights, 0.3), 90), scaleColour(haze, 0.82),
            mixColours(kSunlight, 0xFFFFFF, 150)};
}

AlienView::AlienView(const Terrain& terrain, const AlienSky& sky, int width, int height)
    : terrain_(terrain), sky_(sky), width_(width), height_(height) {
    const double focal = width / kWidthAtOne;
    // Steps of about two pixels on the nearest land, so that slopes stay smooth.
    const double growth = std::clamp(4.0 / height, 0.009, 0.02);
    for (double distance = kNearest; distance < kFarthest; distance *= 1 + growth) {
        const double part = (distance - kNearest) / (kFarthest - kNearest);
        const double clear = std::exp(-1.15 * part) * (1 - part * part * part);
        const double scale = focal / distance;
        const double detail = std::clamp(scale / (Terrain::kDetailPerCell * kFinestDetail) - 1, 0.0, 1.0);
        steps_.push_back({static_cast<float>(distance), static_cast<float>(scale), static_cast<float>(clear),
                          static_cast<float>(detail)});
    }
    for (int up = 0; up <= height; ++up) {
        const double fade = std::pow(std::max(1 - up / (kHorizon * height), 0.0), 1.6);
        skyAbove_.push_back(mixColours(sky.zenith, sky.haze, static_cast<int>(255 * fade)));
    }
    const double radius = kSunRadius * height;
    const double reach = kHaloRadii * radius;
    for (int square = 0; square < reach * reach; ++square) {
        const double away = std::sqrt(square + 0.5);
        const double halo = 1 - std::min(away / reach, 1.0);
        const double disc = std::clamp(radius - away + 0.5, 0.0, 1.0);
        sunAround_.push_back(static_cast<std::uint8_t>(255 * std::max(0.55 * halo * halo, disc)));
    }
}

double AlienView::horizonAt(const Terrain::Station& station, int x) const {
    return kHorizon * height_ + station.bank * (x - width_ / 2.0);
}

void AlienView::drawSky(const ImageView& picture, const Terrain::Station& station) const {
    const double sunX = kSunColumn * width_;
    const double sunY = horizonAt(station, static_cast<int>(sunX)) - kSunHeight * height_;
    std::vector<int> horizon;
    horizon.reserve(static_cast<std::size_t>(width_));
    for (int x = 0; x < width_; ++x)
        horizon.push_back(static_cast<int>(std::lround(horizonAt(station, x))));
    for (int y = 0; y < height_; ++y) {
        const auto down = static_cast<float>(y - sunY);
        for (int x = 0; x < width_; ++x) {
            const int up = std::clamp(horizon[static_cast<std::size_t>(x)] - y, 0, height_);
            Colour colour = skyAbove_[static_cast<std::size_t>(up)];
            const auto aside = static_cast<float>(x - sunX);
            if (const auto square = static_cast<std::size_t>(aside * aside + down * down); square < sunAround_.size())
                colour = mixColours(colour, sky_.sun, sunAround_[square]);
            writeColour(picture.pixel(x, y), colour);
        }
    }
}

void AlienView::drawColumn(const ImageView& picture, const Terrain::Station& station, int x) const {
    const auto aside = static_cast<float>((x + 0.5 - width_ / 2.0) / width_ * kWidthAtOne);
    const auto horizon = static_cast<float>(horizonAt(station, x));
    const auto column = static_cast<float>(station.column);
    const auto row = static_cast<float>(station.row);
    const auto altitude = static_cast<float>(station.altitude);
    int free = height_; // rows from here on are drawn
    for (const Step& step : steps_) {
        const float atColumn = column + aside * step.distance;
        const float atRow = row + step.distance;
        const float top = horizon + (altitude - terrain_.heightAt(atColumn, atRow)) * step.scale;
        const int first = std::max(static_cast<int>(std::ceil(top - 0.5f)), 0);
        if (first >= free)
            continue;
        const std::array<float, 3> light = terrain_.lightAt(atColumn, atRow, step.detail);
        for (; free > first; --free) {
            std::uint8_t* pixel = picture.pixel(x, free - 1);
            for (std::size_t c = 0; c < 3; ++c) {
                const auto haze = static_cast<float>(pixel[c]);
                pixel[c] = static_cast<std::uint8_t>(haze + (light[c] - haze) * step.clear);
            }
        }
        if (free == 0)
            return;
    }
}

void AlienView::draw(const ImageView& picture, const Terrain::Station& station) const {
    drawSky(picture, station);
    for (int x = 0; x < width_; ++x)
        drawColumn(picture, station, x);
}

} // namespace veldran
