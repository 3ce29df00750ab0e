// Bar graph: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kBarGraphFirstControl = 542;

inline constexpr std::array<ParameterRow, 16> kBarGraphParameters = {{
    {ParameterKind::Colour, "Left:", Setting::MainBarGraphLeftColor, "", ""},
    {ParameterKind::Colour, "Right:", Setting::MainBarGraphRightColor, "", ""},
    {ParameterKind::Colour, "Panel:", Setting::MainBarGraphPanelColor, "", ""},
    {ParameterKind::Colour, "Border:", Setting::MainBarGraphBorderColor, "", ""},
    {ParameterKind::Colour, "Pad:", Setting::MainBarGraphPadColor, "", ""},
    {ParameterKind::Number, "Width:", Setting::MainBarGraphWidth, "16,1024,256", ""},
    {ParameterKind::Number, "Depth:", Setting::MainBarGraphDepth, "2,256,14", ""},
    {ParameterKind::Number, "Frames:", Setting::MainBarGraphFrames, "2,32760,128", ""},
    {ParameterKind::Number, "Type:", Setting::MainBarGraphType, "0,3,0", "Gradient;Solid;Image;Segments"},
    {ParameterKind::ImageFile, "Image file:", Setting::MainBarGraphImageFile, "", ""},
    {ParameterKind::Number, "Border size:", Setting::MainBarGraphBorderSize, "1,64,2", ""},
    {ParameterKind::Number, "Pad size:", Setting::MainBarGraphPadSize, "1,64,1", ""},
    {ParameterKind::Number, "Roundness:", Setting::MainBarGraphRoundness, "1,100,80", ""},
    {ParameterKind::Check, "Round corners", Setting::MainBarGraphRoundCorners, "", ""},
    {ParameterKind::Check, "Use border", Setting::MainBarGraphUseBorder, "", ""},
    {ParameterKind::Check, "Use padding", Setting::MainBarGraphUsePadding, "", ""},
}};

} // namespace veldran
