// Bar graph: the places of border, padding and bar, how far it is filled, its segments. Core: draws nothing and knows
// no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "instruments/displays/bar_graph_parameters.h"

#include <cstdint>
#include <vector>

namespace veldran {

// The control of a setting on the bar graph's panel.
template <Setting kSetting>
inline constexpr int kBarGraphControl = kControlOf<kBarGraphParameters, kBarGraphFirstControl, kSetting>;

enum class BarType : std::uint8_t { Gradient, Solid, Image, Segments };

struct BarGraphParameters {
    int width; // of the bar, pixels; 1 and more, as the next two
    int depth;
    int frames;
    BarType type;
    int border;    // pixels on each side of the padding; 0: none
    int pad;       // pixels on each side of the bar; 0: none
    int roundness; // of the outline's corners, per cent of half its shorter side; 0: square
};

// Border and padding lie around the bar, one inside the other, with concentric corners.
struct BarGraphGeometry {
    int width; // of the frame
    int height;
    CanvasRect padded; // what lies within the border
    CanvasRect bar;
    double radius; // of the outline's corners
};

BarGraphGeometry barGraphGeometry(const BarGraphParameters& p);

// Columns of a run in the bar, from its left side; the end lies outside.
struct BarSegment {
    int left;
    int right;
};

// Segments of about half the depth with a gap of a quarter of that between, evenly spread from end to end.
std::vector<BarSegment> barSegments(int width, int depth);

// Columns that are filled in a frame, fractions included: none in the first frame, all in the last one. Segments are
// filled whole.
double filledColumns(const BarGraphParameters& p, const std::vector<BarSegment>& segments, int frame);

// The largest part of an image, about its middle, that has the bar's shape.
CanvasRect partShapedLike(int imageWidth, int imageHeight, int width, int depth);

} // namespace veldran
