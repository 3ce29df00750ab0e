// Plasma arc: numbers only. Shares of the length were chosen by eye.
#include "instruments/scenes/plasma_arc_model.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace veldran {
namespace {

constexpr std::uint32_t kLinesOfArc = 16; // itself and its forks

void keepInside(std::vector<LightPoint>& points, double middle, double limit) {
    for (LightPoint& point : points)
        point.y = middle + softened(point.y - middle, limit);
}

} // namespace

PlasmaGeometry plasmaGeometry(int size) {
    PlasmaGeometry g{};
    g.width = std::max(size, 1);
    g.height = std::max((size * 46 + 50) / 100, 1);
    const double unit = g.width / 100.0;
    const double middle = g.height / 2.0;
    g.glass = std::max(1.4 * unit, 1.0);
    g.tube = {12 * unit, middle - 18 * unit, 88 * unit, middle + 18 * unit};
    g.caps[0] = {2 * unit, middle - 21 * unit, 15 * unit, middle + 21 * unit};
    g.caps[1] = {85 * unit, middle - 21 * unit, 98 * unit, middle + 21 * unit};
    g.rodRadius = std::max(1.1 * unit, 0.7);
    g.ballRadius = std::max(3.2 * unit, 1.5);
    g.ballReach = 8 * unit;
    return g;
}

std::vector<Arc> plasmaArcs(const PlasmaGeometry& g, const PlasmaParameters& p, const LoopNoise& noise, int frame) {
    std::vector<Arc> arcs;
    const double middle = g.height / 2.0;
    const double left = g.caps[0].right + g.ballReach;
    const double right = g.caps[1].left - g.ballReach;
    const double gap = right - left;
    const double limit = (g.tube.bottom - g.tube.top) / 2 - g.glass - 0.5;
    const int count = 1 + p.energy / 2;
    for (int i = 0; i < count; ++i) {
        const std::uint32_t line = static_cast<std::uint32_t>(i) * kLinesOfArc;
        // Each arc leaves the balls where it likes, within the half that faces the other one.
        const auto turn = [&](std::uint32_t stream) {
            return (i == 0 ? 0.35 : 1.0) * noise.smooth(stream, frame, 12) * std::numbers::pi / 2;
        };
        const double fromTurn = turn(line + 240);
        const double toTurn = turn(line + 241);
        const double width = i == 0 ? 1.0 : 0.6 + 0.2 * noise.constant(line + 242);
        ArcCourse course{};
        course.from = {left + g.ballRadius * std::cos(fromTurn), middle + g.ballRadius * std::sin(fromTurn), width};
        course.to = {right - g.ballRadius * std::cos(toTurn), middle + g.ballRadius * std::sin(toTurn), width};
        course.stray = gap * p.disturbance / 64.0;
        // Arcs push each other apart: fanned out over the tube, the first in its middle.
        const double fan = count == 1 || i == 0 ? 0 : (i % 2 == 0 ? -1 : 1) * (i + 1.0) / (count + 1);
        course.bow = 0.75 * limit * fan + 0.05 * gap;
        const double flicker = 0.8 + 0.2 * noise.held(line + 243, frame, 2);
        const double light = (i == 0 ? 1.0 : 0.62 - 0.2 * p.energy / 16.0) * flicker * (0.78 + 0.06 * p.energy / 16.0);
        arcs.push_back({arcLine(course, noise, line, frame), light});
        const Arc trunk = arcs.back();
        addForks(arcs, trunk, i == 0 ? p.complexity : p.complexity / 4, 0.4 * gap, noise, line, frame);
    }
    for (Arc& arc : arcs)
        keepInside(arc.points, middle, limit);
    return arcs;
}

LightProfile plasmaLight(const PlasmaParameters& p, Colour arc, Colour glare) {
    const double size = p.size;
    const double power = p.energy / 16.0;
    return LightProfile({std::max(size * (0.0042 + 0.0022 * power), 0.4), arc, 0.95},
                        {size * (0.018 + 0.006 * power) + 1, mixColours(arc, glare, 190), 0.58},
                        {size * (0.11 + 0.07 * power) + 2, glare, 0.24 - 0.06 * power});
}

} // namespace veldran
