// Jacob's ladder: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kJacobsLadderFirstControl = 470;

inline constexpr std::array<ParameterRow, 10> kJacobsLadderParameters = {{
    {ParameterKind::Colour, "Arc:", Setting::MainLadderWhiteColor, "", ""},
    {ParameterKind::Colour, "Background:", Setting::MainLadderBlueColor, "", ""},
    {ParameterKind::Colour, "Electrodes:", Setting::MainLadderElectrodeColor, "", ""},
    {ParameterKind::Colour, "Base:", Setting::MainLadderBaseColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainLadderSize, "48,256,80", ""},
    {ParameterKind::Number, "Frames:", Setting::MainLadderFrames, "8,32760,64", ""},
    {ParameterKind::Number, "Energy:", Setting::MainLadderEnergy, "1,16,6", ""},
    {ParameterKind::Number, "Complexity:", Setting::MainLadderComplexity, "1,8,1", ""},
    {ParameterKind::Number, "Disturbance:", Setting::MainLadderDisturbance, "1,64,16", ""},
    {ParameterKind::Number, "Random seed:", Setting::MainLadderSeed, "1000,32760,8162", ""},
}};

} // namespace veldran
