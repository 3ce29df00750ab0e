// The marker editor's small radar screen: where markers lie, and which one lies where.
#pragma once

#include <optional>
#include <span>
#include <string>

#include <windows.h>

namespace veldran {

struct MarkerPlace {
    int bearing;  // 0 to 359 degrees clockwise from the top
    int distance; // 0 to 100 per cent
};

// Draws the screen into `box` with a marker for each line; `chosen` is highlighted, -1 is none. Names are drawn in the
// font that `dc` has.
void drawMarkerPicture(HDC dc, const RECT& box, std::span<const std::string> lines, int chosen);

// The marker under a point of the picture; the last of several at one place, which is drawn on top.
std::optional<int> markerUnder(const RECT& box, std::span<const std::string> lines, POINT point);

// The place under a point; beyond the full range it is kept on the outermost ring.
MarkerPlace placeUnder(const RECT& box, POINT point);

} // namespace veldran
