// Radar: its parameters, the geometry of screen and sweep, the markers. Core: draws nothing and knows no windows.
#pragma once

#include "render/colour.h"
#include "settings/parameter.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldran {

inline constexpr int kRadarFirstControl = 329;

inline constexpr std::array<ParameterRow, 12> kRadarParameters = {{
    {ParameterKind::Colour, "Trace:", Setting::MainRadarGreenColor, "", ""},
    {ParameterKind::Colour, "Screen:", Setting::MainRadarBlackColor, "", ""},
    {ParameterKind::Colour, "Scale:", Setting::MainRadarWhiteColor, "", ""},
    {ParameterKind::Colour, "Panel:", Setting::MainRadarPanelColor, "", ""},
    {ParameterKind::Colour, "Markers:", Setting::MainRadarMarkerColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainRadarSize, "48,256,128", ""},
    {ParameterKind::Number, "Padding:", Setting::MainRadarPadding, "2,128,10", ""},
    {ParameterKind::Choice, "Increment:", Setting::MainRadarIncrement, "",
     "-60;-45;-40;-30;-24;-20;-15;-12;-10;-9;-8;-6;-5;-4;-3;-2;-1;1;2;3;4;5;6;8;9;10;12;15;20;24;30;40;45;60"},
    {ParameterKind::Number, "Trace angle:", Setting::MainRadarAngle, "30,180,90", ""},
    {ParameterKind::Markers, "Markers:", Setting::None, "",
     "AMC981,48,48;AZA010,217,88;BOA210,97,88;MAX004,135,78;STI761,210,45;XAO889,280,64;XJS912,330,80,220,52"},
    {ParameterKind::Check, "Show markers", Setting::MainRadarShowMarkers, "", ""},
    {ParameterKind::Check, "Ping markers", Setting::MainRadarPingMarkers, "", ""},
}};

// The control of a setting on the radar's panel; does not compile for a setting that has none.
template <Setting kSetting>
inline constexpr int kRadarControl = [] {
    constexpr int control = controlOf(kRadarParameters, kRadarFirstControl, kSetting);
    static_assert(control != 0);
    return control;
}();

// Radii in the pixels of the graticule, the artwork of 526 x 526 pixels.
inline constexpr int kRadarScreenRadius = 258; // the round screen
inline constexpr int kRadarSweepRadius = 226;  // the sweep's lines, and 100 % of a marker's distance
inline constexpr int kRadarHubRadius = 55;     // the disc at the centre that the sweep never lights

struct RadarPoint {
    int x;
    int y;
    bool operator==(const RadarPoint&) const = default;
};

// All in graticule pixels but for `percent`, the reduction of the finished frame.
struct RadarGeometry {
    int unit; // graticule pixels to an output pixel
    int pad;
    int width;
    int height;
    RadarPoint centre;
    int percent;
};

// Size and padding in output pixels; size is at least 6, below which whole per cents cannot express the reduction.
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
    RadarPoint end;
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

RadarPoint markerPosition(const RadarGeometry& geometry, const RadarMarker& marker);

// The colour of a marker's square on which the sweep shines with `glow` (0 to 255).
Colour pingColour(Colour marker, Colour scale, int glow);

} // namespace veldran
