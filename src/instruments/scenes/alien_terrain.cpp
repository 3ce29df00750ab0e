// Midpoint displacement on a ring: each level halves the distance of the known points and adds less chance.
#include "instruments/scenes/alien_terrain.h"

#include "base/runtime_random.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace veldran {
namespace {

constexpr int kFirstStep = 64; // cells between the points of pure chance
constexpr int kFewestRows = 128;
constexpr int kMostRows = 1024;
constexpr int kRowsPerFrame = 2; // of a flight at its usual speed
// Towards the sun: ahead on the left, low. Of length 1. Its light is warm, what the sky sends into the shade is cold.
constexpr double kSun[3] = {-0.68, 0.45, 0.58};    // right, ahead, up
constexpr double kSunGain[3] = {0.98, 1.20, 1.36}; // blue, green, red
constexpr double kSkylight[3] = {0.38, 0.30, 0.26};
constexpr double kLeastRough = 0.4;
constexpr double kMostRough = 1.6;
constexpr double kSway = 14;     // cells to both sides
constexpr double kClearance = 5; // cells above the highest land below
constexpr int kCorridor = 10;    // cells: what counts as below
constexpr int kLookAhead = 12;
constexpr int kSmoothing = 20; // rows to both sides of a running mean

int rowsFor(int frames) {
    const auto wanted = static_cast<std::uint32_t>(std::clamp(kRowsPerFrame * frames, kFewestRows, kMostRows));
    return static_cast<int>(std::bit_floor(wanted));
}

double swayAt(double turn) {
    return std::sin(2 * std::numbers::pi * turn);
}

} // namespace

double curveHeight(const CurvePoints& curve, double place) {
    const double position = std::clamp(place, 0.0, 1.0) * (kCurvePointCount - 1);
    const auto left = static_cast<std::size_t>(std::min(position, kCurvePointCount - 2.0));
    return std::lerp(curve[left], curve[left + 1], position - static_cast<double>(left)) / kHighestCurvePoint;
}

Colour landColour(const TerrainCurves& curves, double height) {
    const double light = 255 * curveHeight(curves.intensity, height);
    const auto channel = [=](const CurvePoints& curve) {
        return static_cast<int>(light * curveHeight(curve, height) + 0.5);
    };
    return makeColour(channel(curves.red), channel(curves.green), channel(curves.blue));
}

Terrain::Terrain(int seed, int ruggedness, int frames, const TerrainCurves& curves)
    : rows_(rowsFor(std::min(frames, kMostRows))), relief_(14 + 4.0 * ruggedness),
      heights_(static_cast<std::size_t>(rows_) * kColumns), light_(heights_.size()), roughness_(heights_.size()) {
    raiseLand(seed, ruggedness);
    levelLand();
    lightLand(curves);
    planFlight();
}

void Terrain::raiseLand(int seed, int ruggedness) {
    RuntimeRandom random(static_cast<std::uint32_t>(seed));
    const auto chance = [&random](double most) { return static_cast<float>(most * (random.next() / 16383.5 - 1)); };
    const double persistence = 0.40 + 0.025 * ruggedness;
    double most = 1;
    for (int row = 0; row < rows_; row += kFirstStep)
        for (int column = 0; column < kColumns; column += kFirstStep)
            heights_[cell(column, row)] = chance(most);
    for (int half = kFirstStep / 2; half > 0; half /= 2) {
        most *= persistence;
        const auto fill = [&](int column, int row, const std::array<std::array<int, 2>, 4>& neighbours) {
            float sum = 0;
            for (const auto& [x, y] : neighbours)
                sum += heights_[cell(column + x * half, row + y * half)];
            heights_[cell(column, row)] = sum / 4 + chance(most);
        };
        for (int row = half; row < rows_; row += 2 * half)
            for (int column = half; column < kColumns; column += 2 * half)
                fill(column, row, {{{-1, -1}, {1, -1}, {-1, 1}, {1, 1}}});
        for (int row = 0; row < rows_; row += half)
            for (int column = row / half % 2 == 0 ? half : 0; column < kColumns; column += 2 * half)
                fill(column, row, {{{-1, 0}, {1, 0}, {0, -1}, {0, 1}}});
    }
}

// From 0 to the relief; plains wide and peaks few, as rain and gravity leave them.
void Terrain::levelLand() {
    const auto [lowest, highest] = std::ranges::minmax(heights_);
    const float range = std::max(highest - lowest, 1e-6f);
    for (float& height : heights_)
        height = static_cast<float>(relief_ * std::pow((height - lowest) / range, 1.5));
}

void Terrain::lightLand(const TerrainCurves& curves) {
    for (int row = 0; row < rows_; ++row)
        for (int column = 0; column < kColumns; ++column) {
            const double right = heights_[cell(column + 1, row)] - heights_[cell(column - 1, row)];
            const double ahead = heights_[cell(column, row + 1)] - heights_[cell(column, row - 1)];
            const double steep = std::sqrt(right * right + ahead * ahead + 4);
            const double facing = (-right * kSun[0] - ahead * kSun[1] + 2 * kSun[2]) / steep;
            const Colour land = landColour(curves, heights_[cell(column, row)] / relief_);
            const int channels[3] = {blueOf(land), greenOf(land), redOf(land)};
            for (std::size_t c = 0; c < 3; ++c)
                light_[cell(column, row)][c] = static_cast<float>(
                    std::min(channels[c] * (kSkylight[c] + kSunGain[c] * std::max(facing, 0.0)), 255.0));
            roughness_[cell(column, row)] = static_cast<float>(std::clamp(facing / kSun[2], kLeastRough, kMostRough));
        }
}

// As high as the highest land near the way, then evened out twice, so that the aircraft rises before a ridge.
void Terrain::planFlight() {
    std::vector<double> needed(static_cast<std::size_t>(rows_));
    for (int row = 0; row < rows_; ++row) {
        const int middle = kColumns / 2 + static_cast<int>(kSway * swayAt(static_cast<double>(row) / rows_));
        float highest = 0;
        for (int ahead = -2; ahead <= kLookAhead; ++ahead)
            for (int aside = -kCorridor; aside <= kCorridor; ++aside)
                highest = std::max(highest, heights_[cell(middle + aside, row + ahead)]);
        needed[static_cast<std::size_t>(row)] = highest;
    }
    altitudes_ = needed;
    const auto around = [this](int row) { return static_cast<std::size_t>(row & (rows_ - 1)); };
    for (int pass = 0; pass < 2; ++pass) {
        const std::vector<double> before = altitudes_;
        for (int row = 0; row < rows_; ++row) {
            double sum = 0;
            for (int off = -kSmoothing; off <= kSmoothing; ++off)
                sum += before[around(row + off)];
            altitudes_[static_cast<std::size_t>(row)] = sum / (2 * kSmoothing + 1);
        }
    }
    double lift = 0;
    for (std::size_t row = 0; row < needed.size(); ++row)
        lift = std::max(lift, needed[row] - altitudes_[row]);
    for (double& altitude : altitudes_)
        altitude += lift + kClearance;
}

Terrain::Place Terrain::placeOf(float column, float row) const {
    const int x = static_cast<int>(column); // not below 0: truncated is rounded down
    const int y = static_cast<int>(row);
    return {{cell(x, y), cell(x + 1, y), cell(x, y + 1), cell(x + 1, y + 1)},
            column - static_cast<float>(x),
            row - static_cast<float>(y)};
}

float Terrain::heightAt(float column, float row) const {
    const Place at = placeOf(column, row);
    return at.between([this](std::size_t cell) { return heights_[cell]; });
}

std::array<float, 3> Terrain::lightAt(float column, float row, float detail) const {
    const Place at = placeOf(column, row);
    std::array<float, 3> light{};
    float fine = 1;
    if (detail > 0) {
        const Place finer = placeOf(column * kDetailPerCell, row * kDetailPerCell);
        fine += detail * (finer.between([this](std::size_t cell) { return roughness_[cell]; }) - 1);
    }
    for (std::size_t c = 0; c < 3; ++c)
        light[c] = std::min(fine * at.between([this, c](std::size_t cell) { return light_[cell][c]; }), 255.0f);
    return light;
}

Terrain::Station Terrain::stationAt(double turn) const {
    const double row = turn * rows_;
    const int from = static_cast<int>(row);
    const auto around = [this](int at) { return static_cast<std::size_t>(at & (rows_ - 1)); };
    Station station{};
    station.column = 1.5 * kColumns + kSway * swayAt(turn);
    station.row = row;
    station.altitude = std::lerp(altitudes_[around(from)], altitudes_[around(from + 1)], row - from);
    station.bank = 0.10 * std::cos(2 * std::numbers::pi * turn + 0.6); // into the turn, a little late
    return station;
}

double flightTurn(int frame, int frames) {
    const std::int64_t longest = kMostRows / kRowsPerFrame;
    const std::int64_t rounds = std::max((frames + longest / 2) / longest, std::int64_t{1});
    return static_cast<double>((frame % frames + frames) % frames * rounds % frames) / frames;
}

} // namespace veldran
