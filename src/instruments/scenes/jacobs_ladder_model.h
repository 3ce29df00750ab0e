// Jacob's ladder: rods, climbs and arcs. Everything is measured in pixels of the finished frame. Core: draws nothing
// and knows no windows.
#pragma once

#include "instruments/scenes/arc_model.h"
#include "instruments/scenes/jacobs_ladder_parameters.h"

namespace veldran {

// The control of a setting on the ladder's panel.
template <Setting kSetting>
inline constexpr int kJacobsLadderControl = kControlOf<kJacobsLadderParameters, kJacobsLadderFirstControl, kSetting>;

inline constexpr std::uint32_t kLeastDepthFactor = 100; // per cent
inline constexpr std::uint32_t kGreatestDepthFactor = 300;

struct LadderParameters {
    int size;        // width of the frame, pixels
    int depthFactor; // its height, per cent of the width
    int frames;
    int energy;      // 1 to 16: strands and light
    int complexity;  // 1 to 8: forks
    int disturbance; // 1 to 64: how far the arc strays
    int seed;
};

struct LadderGeometry {
    int width;
    int height;
    double rodTop; // rows
    double rodBottom;
    double rodRadius;
    double narrowest; // from the middle to a rod, at its foot
    double widest;    // and at its top
};

LadderGeometry ladderGeometry(const LadderParameters& p);

// How far a rod's middle is from the frame's, in a row. Below its foot it goes straight down.
double rodDistance(const LadderGeometry& geometry, double row);

// Where an arc is on its way up.
struct Climb {
    double height;   // 0 at the foot of the rods, 1 at their tops
    double strength; // 1 when it burns, down to 0 as it breaks; 0: no arc
};

// Whole climbs fit the animation; frame 0 lies within one, so that no loop begins with a strike.
Climb climbAt(int frame, int frames);

// What burns in a frame, brightest first; nothing for a moment after the break.
std::vector<Arc> ladderArcs(const LadderGeometry& geometry, const LadderParameters& p, const LoopNoise& noise,
                            int frame);

LightProfile ladderLight(const LadderParameters& p, Colour arc);

} // namespace veldran
