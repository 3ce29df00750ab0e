// The fine-tuning dialog: numbers that instruments read from the settings, their font, and the names of sound channels.
#pragma once

#include "abi/plugin_abi.h"

#include <windows.h>

namespace veldran {

// Runs the dialog modally. True when the person pressed OK, which stores everything in the settings of this process;
// Cancel stores nothing.
bool runAdvancedDialog(HWND owner, HostParams* host);

} // namespace veldran
