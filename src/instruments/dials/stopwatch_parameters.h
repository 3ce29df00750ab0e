// Stopwatch: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kStopwatchFirstControl = 490;

inline constexpr std::array<ParameterRow, 8> kStopwatchParameters = {{
    {ParameterKind::Colour, "Background:", Setting::MainStopwatchBackColor, "", ""},
    {ParameterKind::Colour, "Large hand:", Setting::MainStopwatchLargeHandColor, "", ""},
    {ParameterKind::Colour, "Small hand:", Setting::MainStopwatchSmallHandColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainStopwatchSize, "64,256,128", ""},
    {ParameterKind::Number, "Frames:", Setting::MainStopwatchFrames, "2,32760,59", ""},
    {ParameterKind::Number, "Padding:", Setting::MainStopwatchPadding, "1,128,10", ""},
    {ParameterKind::Check, "Real time", Setting::MainStopwatchRealTime, "", ""},
    {ParameterKind::Check, "Use padding", Setting::MainStopwatchUsePadding, "", ""},
}};

} // namespace veldran
