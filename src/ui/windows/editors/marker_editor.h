// The editor of radar markers.
#pragma once

#include "abi/plugin_abi.h"

#include <windows.h>

namespace veldran {

// Edits the lines "name,bearing,distance" of a list box, modally: add, change, delete, reorder, undo. True when the
// person changed them; Cancel changes nothing.
bool editMarkers(HWND dialog, int listControlId, HostParams* host);

} // namespace veldran
