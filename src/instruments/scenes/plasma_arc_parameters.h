// Plasma arc: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kPlasmaArcFirstControl = 442;

inline constexpr std::array<ParameterRow, 15> kPlasmaArcParameters = {{
    {ParameterKind::Colour, "Arc:", Setting::MainArclightWhiteColor, "", ""},
    {ParameterKind::Colour, "Background:", Setting::MainArclightBlueColor, "", ""},
    {ParameterKind::Colour, "Glare:", Setting::MainArclightGlareColor, "", ""},
    {ParameterKind::Colour, "Tube:", Setting::MainArclightTubeColor, "", ""},
    {ParameterKind::Colour, "Caps:", Setting::MainArclightCapColor, "", ""},
    {ParameterKind::Colour, "Electrodes:", Setting::MainArclightElectrodeColor, "", ""},
    {ParameterKind::Colour, "Panel:", Setting::MainArclightPanelColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainArclightSize, "48,256,108", ""},
    {ParameterKind::Number, "Frames:", Setting::MainArclightFrames, "8,32760,64", ""},
    {ParameterKind::Number, "Energy:", Setting::MainArclightEnergy, "1,16,6", ""},
    {ParameterKind::Number, "Complexity:", Setting::MainArclightComplexity, "1,8,1", ""},
    {ParameterKind::Number, "Disturbance:", Setting::MainArclightDisturbance, "1,64,16", ""},
    {ParameterKind::Number, "Random seed:", Setting::MainArclightSeed, "1000,32760,11259", ""},
    {ParameterKind::Check, "After image", Setting::MainArclightAfterImage, "", ""},
    {ParameterKind::Check, "Show tube", Setting::MainArclightShowTube, "", ""},
}};

} // namespace veldran
