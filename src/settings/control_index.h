// Finding a dialog's controls by identity. The system's own search walks all children each time, which takes a while in
// a dialog of several hundred; controls that were made at run time are remembered here.
#pragma once

#include <windows.h>

namespace veldran {

// Remembers a control of a dialog until forgetControls.
void rememberControl(HWND dialog, int identity, HWND control);
void forgetControls(HWND dialog);

// The control with this identity, remembered or found; null when there is none.
HWND controlWindow(HWND dialog, int identity);

} // namespace veldran
