// Displacements are noise of their own for each corner: slow for the first levels, quick for the last.
#include "instruments/scenes/arc_model.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace veldran {
namespace {

constexpr double kShortestSegment = 2.5; // pixels
constexpr int kMostLevels = 7;
constexpr int kHoldOfLevel[kMostLevels] = {9, 6, 4, 2, 1, 1, 1}; // frames, chosen by eye
constexpr int kForkHold = 4;                                     // frames
// The noise streams of a line: its corners, then what else it decides.
constexpr std::uint32_t kStreamsOfLine = 256;
constexpr std::uint32_t kChoices = 128;
static_assert((1u << kMostLevels) <= kChoices);
constexpr std::uint32_t kWidths = kChoices + 16;
constexpr std::uint32_t kThinnings = 8; // places between which the width changes evenly
constexpr double kThinnest = 0.5;       // of its course's width, away from the ends
constexpr int kThinningHold = 3;        // frames
constexpr double kForkWidth = 0.6;
constexpr double kForkTip = 0.2;
constexpr double kForkIntensity = 0.55;

int levelsFor(double length) {
    int levels = 2;
    while (levels < kMostLevels && length / (1 << levels) > kShortestSegment)
        ++levels;
    return levels;
}

// Offsets of 2^levels + 1 corners, the ends 0, none beyond `stray`: level k adds at most stray / 2^(k + 1). A corner's
// noise belongs to its place, so that a longer arc has the bends of a shorter one and more.
std::vector<double> displacements(int levels, double stray, const LoopNoise& noise, std::uint32_t stream, int frame) {
    std::vector<double> offsets((std::size_t{1} << levels) + 1);
    double most = stray / 2;
    std::uint32_t corner = stream;
    for (int level = 0; level < levels; ++level, most /= 2) {
        const std::size_t step = std::size_t{1} << (levels - level - 1);
        for (std::size_t i = step; i < offsets.size(); i += 2 * step)
            offsets[i] =
                (offsets[i - step] + offsets[i + step]) / 2 + most * noise.smooth(corner++, frame, kHoldOfLevel[level]);
    }
    return offsets;
}

// The shares of its width that an arc has at even places of its way, 1 at both ends: evenly thick light looks like a
// wire.
using Thinnings = std::array<double, kThinnings + 1>;

Thinnings thinnings(const LoopNoise& noise, std::uint32_t stream, int frame) {
    Thinnings shares{};
    shares.front() = shares.back() = 1;
    for (std::uint32_t i = 1; i < kThinnings; ++i)
        shares[i] = std::lerp(kThinnest, 1.0, 0.5 + 0.5 * noise.smooth(stream + i, frame, kThinningHold));
    return shares;
}

double shareAt(const Thinnings& shares, double part) {
    const auto left = std::min<std::size_t>(static_cast<std::size_t>(part * kThinnings), kThinnings - 1);
    return std::lerp(shares[left], shares[left + 1], part * kThinnings - static_cast<double>(left));
}

} // namespace

std::vector<LightPoint> arcLine(const ArcCourse& course, const LoopNoise& noise, std::uint32_t line, int frame) {
    const double acrossX = course.to.x - course.from.x;
    const double acrossY = course.to.y - course.from.y;
    const double length = std::hypot(acrossX, acrossY);
    const double normalX = length > 0 ? -acrossY / length : 0;
    const double normalY = length > 0 ? acrossX / length : 0;
    const std::vector<double> offsets =
        displacements(levelsFor(length), course.stray, noise, line * kStreamsOfLine, frame);
    const Thinnings shares = thinnings(noise, line * kStreamsOfLine + kWidths, frame);
    std::vector<LightPoint> points;
    points.reserve(offsets.size());
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(offsets.size() - 1);
        points.push_back(
            {std::lerp(course.from.x, course.to.x, part) + normalX * offsets[i],
             std::lerp(course.from.y, course.to.y, part) + normalY * offsets[i] - course.bow * 4 * part * (1 - part),
             std::lerp(course.from.width, course.to.width, part) * shareAt(shares, part)});
    }
    return points;
}

void addForks(std::vector<Arc>& arcs, const Arc& trunk, int count, double reach, const LoopNoise& noise,
              std::uint32_t line, int frame) {
    const LightPoint first = trunk.points.front();
    const LightPoint last = trunk.points.back();
    const double heading = std::atan2(last.y - first.y, last.x - first.x);
    for (int i = 0; i < count; ++i) {
        const std::uint32_t fork = line + 1 + static_cast<std::uint32_t>(i);
        const auto chance = [&](std::uint32_t what) {
            return 0.5 + 0.5 * noise.held(fork * kStreamsOfLine + kChoices + what, frame, kForkHold);
        };
        if (chance(0) < 0.25)
            continue;
        const std::size_t root =
            static_cast<std::size_t>((0.15 + 0.6 * chance(1)) * static_cast<double>(trunk.points.size() - 1));
        // Up or down, and towards either end.
        const double turn =
            (0.35 + 0.6 * chance(2)) * (chance(3) < 0.5 ? -1 : 1) + (chance(5) < 0.5 ? std::numbers::pi : 0);
        const double length = reach * (0.45 + 0.55 * chance(4));
        ArcCourse course{};
        course.from = trunk.points[root];
        course.from.width *= kForkWidth;
        course.to = {course.from.x + length * std::cos(heading + turn),
                     course.from.y + length * std::sin(heading + turn), course.from.width * kForkTip};
        course.stray = length * 0.2;
        arcs.push_back({arcLine(course, noise, fork, frame), trunk.intensity * kForkIntensity});
    }
}

double softened(double value, double limit) {
    return value / std::sqrt(1 + value * value / (limit * limit));
}

} // namespace veldran
