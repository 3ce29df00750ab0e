// Colour swatches: owner-drawn buttons that show a colour and open the system's colour dialog.
#pragma once

#include <windows.h>

namespace veldran {

// Draws a swatch: its colour, pressed, focus and disabled states.
void drawSwatch(const DRAWITEMSTRUCT& item);

// Lets the person choose a colour for the swatch; true when one was chosen.
bool chooseSwatchColour(HWND dialog, int controlId);

} // namespace veldran
