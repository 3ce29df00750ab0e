// The editor of data points: a tachometer's speed or an altimeter's altitude over the animation.
#pragma once

#include "abi/plugin_abi.h"
#include "settings/data_points.h"

#include <windows.h>

namespace veldran {

// Edits the list of points in a control's text, modally. True when the person changed it; Cancel changes nothing.
bool editDataPoints(HWND dialog, int controlId, PointsKind kind, HostParams* host);

} // namespace veldran
