// Jacob's ladder: numbers only. Shares of the width and of a climb were chosen by eye.
#include "instruments/scenes/jacobs_ladder_model.h"

#include <algorithm>
#include <cmath>

namespace veldran {
namespace {

constexpr int kFramesOfClimb = 32;
constexpr double kStart = 0.35;   // of a climb, in frame 0
constexpr double kTopped = 0.84;  // of a climb: the rods' tops are reached
constexpr double kBroken = 0.975; // of a climb: the arc is out
constexpr int kMostStrands = 5;
constexpr double kHighest = 1.2;             // of a rod: its curve goes on a little beyond its top, for its rounded end
constexpr std::uint32_t kLinesOfStrand = 16; // itself and its forks

} // namespace

LadderGeometry ladderGeometry(const LadderParameters& p) {
    LadderGeometry geometry{};
    geometry.width = std::max(p.size, 1);
    geometry.height = std::max(static_cast<int>(std::int64_t{p.size} * p.depthFactor / 100), 1);
    const double width = geometry.width;
    geometry.rodTop = 0.05 * geometry.height + 0.16 * width; // room for the bow
    geometry.rodBottom = geometry.height - 0.20 * width;
    geometry.rodRadius = std::max(0.017 * width, 0.8);
    geometry.narrowest = 0.055 * width;
    geometry.widest = 0.37 * width;
    return geometry;
}

double rodDistance(const LadderGeometry& geometry, double row) {
    const double way = geometry.rodBottom - geometry.rodTop;
    const double up = way > 0 ? std::clamp((geometry.rodBottom - row) / way, 0.0, kHighest) : 0;
    return std::lerp(geometry.narrowest, geometry.widest, 0.55 * up + 0.45 * up * up * up);
}

Climb climbAt(int frame, int frames) {
    const std::int64_t climbs = std::max((frames + kFramesOfClimb / 2) / kFramesOfClimb, 1);
    const std::int64_t place = (frame % frames * climbs) % frames;
    const double turn = static_cast<double>(place) / frames + kStart;
    const double part = turn < 1 ? turn : turn - 1;
    if (part >= kBroken)
        return {1, 0};
    if (part >= kTopped)
        return {1, 1 - (part - kTopped) / (kBroken - kTopped)};
    const double up = part / kTopped;
    return {0.03 + 0.97 * (0.7 * up + 0.3 * up * up), 1};
}

std::vector<Arc> ladderArcs(const LadderGeometry& geometry, const LadderParameters& p, const LoopNoise& noise,
                            int frame) {
    std::vector<Arc> arcs;
    const Climb climb = climbAt(frame, p.frames);
    if (climb.strength <= 0)
        return arcs;
    const double row = std::lerp(geometry.rodBottom, geometry.rodTop, climb.height);
    const double reach = rodDistance(geometry, row);
    const double gap = 2 * reach;
    const double middle = geometry.width / 2.0;
    const double width = 0.35 + 0.65 * climb.strength;
    const int strands = std::min(1 + p.energy / 4, kMostStrands);
    for (int i = 0; i < strands; ++i) {
        const std::uint32_t line = static_cast<std::uint32_t>(i) * kLinesOfStrand;
        ArcCourse course{};
        // The strands are one arc torn apart: their feet stand close together on the rods.
        const double foot = row + i * geometry.rodRadius * (0.6 + 0.5 * noise.smooth(line + 200, frame, 6));
        const double strand = i == 0 ? width : 0.6 * width;
        course.from = {middle - reach, foot, strand};
        course.to = {middle + reach, foot, strand};
        // Where it breaks it is drawn up and out once more.
        course.bow = gap * (0.06 + 0.16 * climb.height + 0.08 * (1 - climb.strength)) * (1 - 0.12 * i);
        course.stray = gap * p.disturbance / 64.0 * 0.75;
        const double flicker = 0.88 + 0.12 * noise.held(line + 201, frame, 1);
        const double light =
            flicker * std::sqrt(climb.strength) * (i == 0 ? 1.0 : 0.5) * (0.72 + 0.28 * p.energy / 16.0);
        arcs.push_back({arcLine(course, noise, line, frame), light});
        const Arc trunk = arcs.back();
        addForks(arcs, trunk, i == 0 ? p.complexity : p.complexity / 3, 0.45 * gap, noise, line, frame);
    }
    // Nothing burns above the frame.
    for (Arc& arc : arcs)
        for (LightPoint& point : arc.points)
            point.y = row - softened(std::max(row - point.y, 0.0), row) - std::min(row - point.y, 0.0);
    // The rods glow where it stands on them.
    for (const int side : {-1, 1}) {
        const auto onRod = [&](double down) {
            const double place = row + down * geometry.rodRadius;
            return LightPoint{middle + side * rodDistance(geometry, place), place, width};
        };
        arcs.push_back({{onRod(-1), onRod(2)}, 0.4 * climb.strength});
    }
    return arcs;
}

LightProfile ladderLight(const LadderParameters& p, Colour arc) {
    const double size = p.size;
    const double power = p.energy / 16.0;
    const Colour hue = vividColour(arc);
    return LightProfile({std::max(size * (0.0060 + 0.0030 * power), 0.45), arc, 1.0},
                        {size * (0.030 + 0.012 * power) + 1, mixColours(arc, hue, 200), 0.70},
                        {size * (0.13 + 0.10 * power) + 2, hue, 0.20 + 0.10 * power});
}

} // namespace veldran
