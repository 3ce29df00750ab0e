// Radar: the geometry of screen and sweep, the markers. Core: draws nothing and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "instruments/scopes/radar_parameters.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldran {

// The control of a setting on the radar's panel.
template <Setting kSetting>
inline constexpr int kRadarControl = kControlOf<kRadarParameters, kRadarFirstControl, kSetting>;

// The list of markers, the one control that edits no setting.
inline constexpr int kRadarMarkerList = controlOf(kRadarParameters, kRadarFirstControl, ParameterKind::Markers);
static_assert(kRadarMarkerList != 0);

// Radii in the pixels of the graticule, the artwork of 526 x 526 pixels.
inline constexpr int kRadarScreenRadius = 258; // the round screen
inline constexpr int kRadarSweepRadius = 226;  // the sweep's lines, and 100 % of a marker's distance
inline constexpr int kRadarHubRadius = 55;     // the disc at the centre that the sweep never lights

struct RadarGeometry : ArtworkGeometry {
    CanvasPoint centre;
};

// Size and padding in output pixels.
RadarGeometry radarGeometry(int graticuleWidth, int graticuleHeight, int size, int padding);

enum class SweepDirection : std::uint8_t { Clockwise, CounterClockwise };

// An increment below 1 sweeps counter-clockwise, 0 included.
SweepDirection sweepDirection(int increment);

// Degrees that the sweep turns per frame: 0 counts as 1, the rest is kept within -60 to 60.
int clampIncrement(int increment);

// Frames of a full turn at a clamped increment.
int sweepFrameCount(int increment);

// One line of the afterglow, from the centre to `end`. The caller draws them in order, each over the ones before.
struct SweepLine {
    CanvasPoint end;
    std::uint8_t grey;
};

// The afterglow of `traceAngle` degrees behind a leading edge at `angle` (degrees clockwise from the top, may be
// negative): one line for each pixel of the arc at the sweep's radius.
std::vector<SweepLine> sweepLines(const RadarGeometry& geometry, int angle, int traceAngle, SweepDirection direction);

struct RadarMarker {
    std::string name; // may be empty
    int bearing;      // degrees clockwise from the top
    int distance;     // per cent of the sweep's radius
};

// Reads "name,bearing,distance"; what is missing or no number is 0, what follows the distance is ignored.
RadarMarker parseRadarMarker(std::string_view line);

CanvasPoint markerPosition(const RadarGeometry& geometry, const RadarMarker& marker);

} // namespace veldran
