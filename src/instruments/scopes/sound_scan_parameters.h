// Sound scan: the rows of its panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

inline constexpr int kSoundScanFirstControl = 297;

inline constexpr std::array<ParameterRow, 18> kSoundScanParameters = {{
    {ParameterKind::Colour, "Trace:", Setting::MainVoiceGreenColor, "", ""},
    {ParameterKind::Colour, "Background:", Setting::MainVoiceBlackColor, "", ""},
    {ParameterKind::Colour, "Scale:", Setting::MainVoiceScaleColor, "", ""},
    {ParameterKind::Colour, "Panel:", Setting::MainVoicePanelColor, "", ""},
    {ParameterKind::Colour, "Bezel:", Setting::MainVoiceBezelColor, "", ""},
    {ParameterKind::Number, "Width:", Setting::MainVoiceWidth, "64,512,240", ""},
    {ParameterKind::Number, "Size:", Setting::MainVoiceSize, "48,256,120", ""},
    {ParameterKind::Number, "Step size:", Setting::MainVoiceStepSize, "1,64,4", ""},
    {ParameterKind::Number, "Pause:", Setting::MainVoicePause, "0,6000,100", ""},
    {ParameterKind::Number, "Glow:", Setting::MainVoiceGlow, "0,64,16", ""},
    {ParameterKind::Number, "Pad:", Setting::MainVoicePadsize, "1,256,10", ""},
    {ParameterKind::Number, "Bezel size:", Setting::MainVoiceBezelSize, "16,32,20", ""},
    {ParameterKind::Choice, "Channels:", Setting::MainVoiceChannels, "", kSoundChannels},
    {ParameterKind::Sound, "Sound:", Setting::MainVoiceSound, "", ""},
    {ParameterKind::Check, "Fade", Setting::MainVoiceFade, "", ""},
    {ParameterKind::Check, "Normalize", Setting::MainVoiceNormalize, "", ""},
    {ParameterKind::Check, "Use bezel", Setting::MainVoiceUseBezel, "", ""},
    {ParameterKind::Check, "Use scale", Setting::MainVoiceUseScale, "", ""},
}};

} // namespace veldran
