// The edge of the controls that the plugin draws itself.
#pragma once

#include <windows.h>

namespace veldran {

// Draws a thin frame, as fields have, around `box` and fills it with a system colour. Returns what lies inside the
// frame; a pressed control has a thicker one.
RECT drawControlEdge(HDC dc, RECT box, bool pressed, int fillColour);

} // namespace veldran
