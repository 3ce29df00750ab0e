// The output options of the main dialog: the controls that belong to no instrument, and the settings they edit.
// Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>

namespace veldran {

// Identities of the main dialog's own controls; all lie below the instruments' range.
enum MainControl : int {
    kControlBuild = 1,
    kControlCancel = 2,
    kControlTest = 3,
    kControlAdvanced = 5,
    kControlDefaults = 6,
    kControlPlay = 7,
    kControlHelp = 9,
    kControlTrueColour = 10,
    kControlPalette = 13,
    kControlCustomPalette = 14,
    kControlDither = 15,
    kControlSupercompress = 19,
    kControlMaskBackground = 29,
    kControlEffect = 30,
    kControlDelay = 31,
    kControlTransparent = 46,
    kControlAntialias = 48,
    kControlAlpha = 49,
    kControlAlphaBackground = 50,
    kControlPreview = 60,
    kControlPanelFrame = 61,
    kControlPreviewFrame = 62,
    kControlOutputFrame = 63,
    kControlDelayNote = 64,
    kControlEffectLabel = 65,
    kControlPaletteLabel = 66,
    kControlDelayLabel = 67,
    kControlSummary = 68,
};

struct OptionRow {
    int control;
    int labelControl; // 0 for a check box, which carries its label itself
    ParameterRow parameter;
};

// The effect list is filled from the effects' names and so has no choices here.
inline constexpr std::array<OptionRow, 12> kOutputOptions = {{
    {kControlEffect, kControlEffectLabel, {ParameterKind::Choice, "Effect:", Setting::MainEffect, "", ""}},
    {kControlTrueColour, 0, {ParameterKind::Check, "Tr&ue color", Setting::Truecolour, "", ""}},
    {kControlAlpha, 0, {ParameterKind::Check, "Alpha transparency", Setting::MainAlphaTrans, "", ""}},
    {kControlAlphaBackground, 0, {ParameterKind::Check, "Alpha background", Setting::UseAlphaGreyBack, "", ""}},
    {kControlAntialias, 0, {ParameterKind::Check, "&Antialias", Setting::MainAntialias, "", ""}},
    {kControlCustomPalette, 0, {ParameterKind::Check, "&Custom palette", Setting::MainCustompalette, "", ""}},
    {kControlDither, 0, {ParameterKind::Check, "&Dither", Setting::MainDither, "", ""}},
    {kControlSupercompress, 0, {ParameterKind::Check, "&Supercompress", Setting::MainSupercompress, "", ""}},
    {kControlMaskBackground, 0, {ParameterKind::Check, "&Mask background", Setting::MainMaskBackground, "", ""}},
    {kControlTransparent, 0, {ParameterKind::Check, "&Transparent", Setting::MainTransparent, "", ""}},
    {kControlPalette,
     kControlPaletteLabel,
     {ParameterKind::Choice, "Palette", Setting::MainPalette, "",
      "Black and white;Sixteen-color Windows;32-color orthogonal;64-color orthogonal;128-color orthogonal;"
      "216-color safe;256-color orthogonal;256-color with gray;256 gray levels"}},
    {kControlDelay, kControlDelayLabel, {ParameterKind::Number, "Delay:", Setting::MainDelay, "1,32768,1", ""}},
}};

} // namespace veldran
