// Radar: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

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
    {ParameterKind::Choice, "Increment:", Setting::MainRadarIncrement, "", kPhaseIncrements},
    {ParameterKind::Number, "Trace angle:", Setting::MainRadarAngle, "30,180,90", ""},
    {ParameterKind::Markers, "Markers:", Setting::None, "",
     "AMC981,48,48;AZA010,217,88;BOA210,97,88;MAX004,135,78;STI761,210,45;XAO889,280,64;XJS912,330,80,220,52"},
    {ParameterKind::Check, "Show markers", Setting::MainRadarShowMarkers, "", ""},
    {ParameterKind::Check, "Ping markers", Setting::MainRadarPingMarkers, "", ""},
}};

} // namespace veldran
