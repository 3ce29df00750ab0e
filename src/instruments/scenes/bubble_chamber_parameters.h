// Bubble chamber: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kBubbleChamberFirstControl = 351;

inline constexpr std::array<ParameterRow, 13> kBubbleChamberParameters = {{
    {ParameterKind::Colour, "Panel:", Setting::MainBubblePanelColor, "", ""},
    {ParameterKind::Colour, "Bubbles:", Setting::MainBubbleWhiteColor, "", ""},
    {ParameterKind::Colour, "Glass:", Setting::MainBubbleBlueColor, "", ""},
    {ParameterKind::Number, "Width:", Setting::MainBubbleWide, "40,400,80", ""},
    {ParameterKind::Number, "Depth:", Setting::MainBubbleDeep, "40,400,280", ""},
    {ParameterKind::Number, "Frames:", Setting::MainBubbleFrames, "64,32760,128", ""},
    {ParameterKind::Number, "Density:", Setting::MainBubbleDensity, "8,256,32", ""},
    {ParameterKind::Number, "Size:", Setting::MainBubbleSize, "10,64,18", ""},
    {ParameterKind::Number, "Drift:", Setting::MainBubbleDrift, "0,99,25", ""},
    {ParameterKind::Number, "Random seed:", Setting::MainBubbleSeed, "1000,32760,10632", ""},
    {ParameterKind::Number, "Bevel depth:", Setting::MainBubbleBevelFactor, "1,255,255", ""},
    {ParameterKind::Check, "Bevel", Setting::MainBubbleUseBevel, "", ""},
    {ParameterKind::Check, "Round corners", Setting::MainBubbleUseRoundCorners, "", ""},
}};

} // namespace veldran
