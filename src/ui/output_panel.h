// The main dialog's own controls: effect list, output options, preview area, buttons.
#pragma once

#include <windows.h>

namespace veldran {

void createOutputControls(HWND dialog);
void fillOutputControls(HWND dialog);
void saveOutputControls(HWND dialog);

// Sizes the dialog, places its own controls and every panel, and centres it on its owner.
void layOutMainDialog(HWND dialog);

// Enables what makes sense together: colour options only without true colour, the fixed palette only without a custom
// one, background options only without supercompression.
void refreshEnabling(HWND dialog);

// The row that the effect list shows.
int selectedEffect(HWND dialog);

} // namespace veldran
