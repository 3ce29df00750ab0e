// Lissajous figure: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kLissajousFirstControl = 238;

inline constexpr std::array<ParameterRow, 16> kLissajousParameters = {{
    {ParameterKind::Colour, "Trace:", Setting::MainLissajousGreenColor, "", ""},
    {ParameterKind::Colour, "Background:", Setting::MainLissajousBlackColor, "", ""},
    {ParameterKind::Colour, "Scale:", Setting::MainLissajousScaleColor, "", ""},
    {ParameterKind::Colour, "Panel:", Setting::MainLissajousPanelColor, "", ""},
    {ParameterKind::Colour, "Bezel:", Setting::MainLissajousBezelColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainLissajousSize, "64,256,128", ""},
    {ParameterKind::Number, "Trace size:", Setting::MainLissajousTraceSize, "1,16,2", ""},
    {ParameterKind::Number, "Glow:", Setting::MainLissajousGlow, "0,64,16", ""},
    {ParameterKind::Number, "Horizontal:", Setting::MainLissajousHorz, "1,32760,2", ""},
    {ParameterKind::Number, "Vertical:", Setting::MainLissajousVert, "1,32760,2", ""},
    {ParameterKind::Choice, "Increment:", Setting::MainLissajousIncrement, "", kPhaseIncrements},
    {ParameterKind::Number, "Pad:", Setting::MainLissajousPadsize, "1,256,16", ""},
    {ParameterKind::Check, "Use scale", Setting::MainLissajousUseScale, "", ""},
    {ParameterKind::Check, "Vary Y phase", Setting::MainLissajousPhaseY, "", ""},
    {ParameterKind::Number, "Bezel size:", Setting::MainLissajousBezelSize, "16,32,10", ""},
    {ParameterKind::Check, "Use bezel", Setting::MainLissajousUseBezel, "", ""},
}};

} // namespace veldran
