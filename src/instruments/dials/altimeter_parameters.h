// Altimeter: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kAltimeterFirstControl = 525;

inline constexpr std::array<ParameterRow, 9> kAltimeterParameters = {{
    {ParameterKind::Colour, "Panel:", Setting::MainAltimeterPanelColor, "", ""},
    {ParameterKind::Colour, "100 Feet:", Setting::MainAltimeterHunColor, "", ""},
    {ParameterKind::Colour, "1000 Feet:", Setting::MainAltimeterThouColor, "", ""},
    {ParameterKind::Colour, "10,000 Feet:", Setting::MainAltimeterTenThouColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainAltimeterSize, "64,256,128", ""},
    {ParameterKind::Number, "Pad:", Setting::MainAltimeterSpacing, "1,256,16", ""},
    {ParameterKind::Number, "Frames:", Setting::MainAltimeterFrames, "8,32760,128", ""},
    {ParameterKind::Points, "Altitude:", Setting::MainAltimeterDataPointList, "", ""},
    {ParameterKind::Check, "Use padding", Setting::MainAltimeterUsePadding, "", ""},
}};

} // namespace veldran
