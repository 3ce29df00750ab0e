// Magic eye: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kMagicEyeFirstControl = 221;

inline constexpr std::array<ParameterRow, 10> kMagicEyeParameters = {{
    {ParameterKind::Colour, "Glow:", Setting::MainMagicEyeGreenColor, "", ""},
    {ParameterKind::Colour, "Panel:", Setting::MainMagicEyeBlackColor, "", ""},
    {ParameterKind::Number, "Size:", Setting::MainMagicEyeSize, "48,256,96", ""},
    {ParameterKind::Number, "Frames:", Setting::MainMagicEyeFrames, "2,32760,128", ""},
    {ParameterKind::Number, "Padding:", Setting::MainMagicEyePadding, "1,128,10", ""},
    {ParameterKind::Choice, "Channels:", Setting::MainMagicEyeChannels, "", kSoundChannels},
    {ParameterKind::Sound, "Sound:", Setting::MainMagicEyeSound, "", ""},
    {ParameterKind::Check, "Match time", Setting::MainMagicEyeMatchTime, "", ""},
    {ParameterKind::Check, "Normalize", Setting::MainMagicEyeNormalize, "", ""},
    {ParameterKind::Check, "Use padding", Setting::MainMagicEyeUsePadding, "", ""},
}};

} // namespace veldran
