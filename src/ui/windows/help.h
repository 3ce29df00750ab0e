// Opening the help document. Showing it is the host's business: the plugin brings no viewer.
#pragma once

#include "abi/plugin_abi.h"

#include <windows.h>

namespace veldran {

// Asks the host to show the help document at `topic` (an anchor, see help_topics.h; null or empty: at its beginning).
// A host that cannot is excused in a message owned by `parent`.
void showHelp(HWND parent, HostParams* host, const char* topic);

} // namespace veldran
