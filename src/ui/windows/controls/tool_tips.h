// Tool tips of a dialog's number fields.
#pragma once

#include <windows.h>

namespace veldran {

// Gives every number field of the panels and the options a tip with its range and its first value. The tips go with the
// dialog.
void attachToolTips(HWND dialog);

} // namespace veldran
