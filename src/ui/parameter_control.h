// One parameter's controls: made, placed, filled from the settings and saved to them, all from its row.
#pragma once

#include "settings/parameter.h"

#include <windows.h>

namespace veldran {

// A parameter row with the identities of its label (0 for a check box) and of its control.
struct BoundParameter {
    const ParameterRow* row;
    int label;
    int control;
};

enum class InitialVisibility : bool { Hidden, Shown };

// Creates label, control and spinner as children of the dialog, in tab order, without place or content.
void createParameter(HWND dialog, const BoundParameter& parameter, InitialVisibility visibility);

// Places a label and its control side by side in `cell`; a check box takes the whole cell.
void placeParameter(HWND dialog, const BoundParameter& parameter, const RECT& cell, int labelWidth);

// Shows the setting's value; what lies outside of the range is clamped, an unknown choice becomes the default one.
void fillParameter(HWND dialog, const BoundParameter& parameter);

// Stores what the control shows.
void saveParameter(HWND dialog, const BoundParameter& parameter);

// Creates a child control with the dialog's font.
HWND createChild(HWND dialog, const char* windowClass, const char* text, DWORD style, DWORD extendedStyle,
                 int identity);

} // namespace veldran
