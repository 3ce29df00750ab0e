// The countdown's entries for the effect registry.
#pragma once

#include "render/colour.h"

#include <windows.h>

namespace veldran {

// The colour behind alpha frames; black where only "Alpha transparency" is checked, and none without alpha.
Colour countdownBackground(HWND dialog, int transparent);

} // namespace veldran
