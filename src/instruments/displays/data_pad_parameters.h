// Data pad: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kDataPadFirstControl = 504;

inline constexpr std::array<ParameterRow, 12> kDataPadParameters = {{
    {ParameterKind::Colour, "Page:", Setting::MainDatapadBackColor, "", ""},
    {ParameterKind::Colour, "Case:", Setting::MainDatapadBezelColor, "", ""},
    {ParameterKind::Colour, "Counter:", Setting::MainDatapadCounterColor, "", ""},
    {ParameterKind::Colour, "Status:", Setting::MainDatapadStatusColor, "", ""},
    {ParameterKind::Colour, "Text:", Setting::MainDatapadTextColor, "", ""},
    {ParameterKind::TextFile, "Text file:", Setting::MainDatapadTextFile, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainDatapadSize, "64,256,128", ""},
    {ParameterKind::Number, "Shadow density:", Setting::MainDatapadShadowDensity, "20,80,25", ""},
    {ParameterKind::Number, "Shadow offset:", Setting::MainDatapadShadowOffset, "10,30,28", ""},
    {ParameterKind::Check, "Shadow", Setting::MainDatapadUseShadow, "", ""},
    {ParameterKind::Check, "Status", Setting::MainDatapadUseStatus, "", ""},
    {ParameterKind::Check, "Simple case", Setting::MainDatapadSimple, "", ""},
}};

} // namespace veldran
