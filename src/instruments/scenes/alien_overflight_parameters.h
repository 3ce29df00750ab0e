// Alien Overflight: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kAlienOverflightFirstControl = 385;

inline constexpr std::array<ParameterRow, 15> kAlienOverflightParameters = {{
    {ParameterKind::Colour, "Panel:", Setting::MainPlasmaPanelColor, "", ""},
    {ParameterKind::Colour, "Bezel:", Setting::MainPlasmaBezelColor, "", ""},
    {ParameterKind::Colour, "Scale:", Setting::MainPlasmaScaleColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainPlasmaSize, "64,256,196", ""},
    {ParameterKind::Number, "Frames:", Setting::MainPlasmaFrames, "8,32760,128", ""},
    {ParameterKind::Number, "Terrain:", Setting::MainPlasmaTerrain, "1,10,4", ""},
    {ParameterKind::Number, "Random seed:", Setting::MainPlasmaSeed, "1000,32760,10632", ""},
    {ParameterKind::Number, "Bezel size:", Setting::MainPlasmaBezelSize, "4,32,16", ""},
    {ParameterKind::Curve, "Red:", Setting::MainPlasmaRed, "", ""},
    {ParameterKind::Curve, "Green:", Setting::MainPlasmaGreen, "", ""},
    {ParameterKind::Curve, "Blue:", Setting::MainPlasmaBlue, "", ""},
    {ParameterKind::Curve, "Intensity:", Setting::MainPlasmaIntensity, "", ""},
    {ParameterKind::Check, "Circular", Setting::MainPlasmaCircular, "", ""},
    {ParameterKind::Check, "Use bezel", Setting::MainPlasmaUseBezel, "", ""},
    {ParameterKind::Check, "Use scale", Setting::MainPlasmaUseScale, "", ""},
}};

} // namespace veldran
