// Countdown: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kCountdownFirstControl = 200;

inline constexpr std::array<ParameterRow, 12> kCountdownParameters = {{
    {ParameterKind::Colour, "Digits:", Setting::MainCountdownRedColor, "", ""},
    {ParameterKind::Colour, "Background:", Setting::MainCountdownBlackColor, "", ""},
    {ParameterKind::Number, "Hours:", Setting::MainCountdownHours, "0,99,0", ""},
    {ParameterKind::Number, "Minutes:", Setting::MainCountdownMinutes, "0,59,0", ""},
    {ParameterKind::Number, "Seconds:", Setting::MainCountdownSeconds, "0,59,30", ""},
    {ParameterKind::Number, "Size:", Setting::MainCountdownSize, "10,128,24", ""},
    {ParameterKind::Check, "Include tenths", Setting::MainCountdownUseHund, "", ""},
    {ParameterKind::Check, "Use padding", Setting::MainCountdownUsePadding, "", ""},
    {ParameterKind::Number, "Padding:", Setting::MainCountdownPadding, "0,256,16", ""},
    {ParameterKind::Check, "Use bezel", Setting::MainCountdownUseBezel, "", ""},
    {ParameterKind::Number, "Bezel size:", Setting::MainCountdownBezelSize, "4,256,16", ""},
    {ParameterKind::SessionColour, "Bezel:", Setting::None, "", ""},
}};

} // namespace veldran
