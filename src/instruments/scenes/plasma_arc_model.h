// Plasma arc: a glass tube that lies on its side, a cap with an electrode at each end, arcs between. Everything is
// measured in pixels of the finished frame. Core: draws nothing and knows no windows.
#pragma once

#include "instruments/scenes/arc_model.h"
#include "instruments/scenes/plasma_arc_parameters.h"
#include "render/painted_shapes.h"

namespace veldran {

// The control of a setting on the plasma arc's panel.
template <Setting kSetting>
inline constexpr int kPlasmaArcControl = kControlOf<kPlasmaArcParameters, kPlasmaArcFirstControl, kSetting>;

struct PlasmaParameters {
    int size; // length of the picture, pixels
    int frames;
    int energy;      // 1 to 16: arcs and light
    int complexity;  // 1 to 8: forks
    int disturbance; // 1 to 64: how far arcs stray
    int seed;
};

struct PlasmaGeometry {
    int width;
    int height;
    ShapeBox tube;     // between the caps, glass included
    double glass;      // thickness of the wall as it shows
    ShapeBox caps[2];  // left, right
    double rodRadius;  // of an electrode's rod
    double ballRadius; // of its end
    double ballReach;  // from a cap to the ball's middle
};

PlasmaGeometry plasmaGeometry(int size);

// What burns in a frame, brightest first. No corner leaves the inside of the glass.
std::vector<Arc> plasmaArcs(const PlasmaGeometry& geometry, const PlasmaParameters& p, const LoopNoise& noise,
                            int frame);

LightProfile plasmaLight(const PlasmaParameters& p, Colour arc, Colour glare);

} // namespace veldran
