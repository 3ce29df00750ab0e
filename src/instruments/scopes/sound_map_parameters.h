// Sound map: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kSoundMapFirstControl = 267;

inline constexpr std::array<ParameterRow, 17> kSoundMapParameters = {{
    {ParameterKind::Colour, "Trace:", Setting::MainSonicGreenColor, "", ""},
    {ParameterKind::Colour, "Background:", Setting::MainSonicBlackColor, "", ""},
    {ParameterKind::Colour, "Scale:", Setting::MainSonicScaleColor, "", ""},
    {ParameterKind::Colour, "Panel:", Setting::MainSonicPanelColor, "", ""},
    {ParameterKind::Colour, "Bezel:", Setting::MainSonicBezelColor, "", ""},
    {ParameterKind::Number, "Width:", Setting::MainSonicWidth, "64,512,240", ""},
    {ParameterKind::Number, "Size:", Setting::MainSonicSize, "48,256,120", ""},
    {ParameterKind::Number, "Frames:", Setting::MainSonicFrames, "2,32760,128", ""},
    {ParameterKind::Number, "Glow:", Setting::MainSonicGlow, "0,64,16", ""},
    {ParameterKind::Number, "Pad:", Setting::MainSonicPadsize, "1,256,10", ""},
    {ParameterKind::Number, "Bezel size:", Setting::MainSonicBezelSize, "16,32,20", ""},
    {ParameterKind::Choice, "Channels:", Setting::MainSonicChannels, "", kSoundChannels},
    {ParameterKind::Sound, "Sound:", Setting::MainSonicSound, "", ""},
    {ParameterKind::Check, "Match time", Setting::MainSonicMatchTime, "", ""},
    {ParameterKind::Check, "Normalize", Setting::MainSonicNormalize, "", ""},
    {ParameterKind::Check, "Use bezel", Setting::MainSonicUseBezel, "", ""},
    {ParameterKind::Check, "Use scale", Setting::MainSonicUseScale, "", ""},
}};

} // namespace veldran
