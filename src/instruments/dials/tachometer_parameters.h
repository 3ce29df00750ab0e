// Tachometer: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kTachometerFirstControl = 375;

inline constexpr std::array<ParameterRow, 5> kTachometerParameters = {{
    {ParameterKind::Colour, "Panel:", Setting::MainTachBlackColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainTachSize, "48,256,128", ""},
    {ParameterKind::Number, "Padding:", Setting::MainTachPadding, "2,128,10", ""},
    {ParameterKind::Number, "Frames:", Setting::MainTachFrames, "2,32760,256", ""},
    {ParameterKind::Points, "RPM:", Setting::MainTachDataPointList, "", ""},
}};

} // namespace veldran
