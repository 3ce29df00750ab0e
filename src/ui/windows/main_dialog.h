// The configuration dialog.
#pragma once

#include "abi/plugin_abi.h"

#include <windows.h>

namespace veldran {

// Runs the dialog modally. It reads the configuration file when it opens and writes it when it is destroyed, however it
// is closed. False when it could not be opened.
bool runMainDialog(HWND owner, HostParams* host);

} // namespace veldran
