// One frame for all of them: system colours follow the person's scheme.
#include "ui/windows/controls/control_edge.h"

#include "ui/windows/text_scale.h"

namespace veldran {

RECT drawControlEdge(HDC dc, RECT box, bool pressed, int fillColour) {
    const int thickness = scaled(1) + (pressed ? scaled(1) : 0);
    FillRect(dc, &box, GetSysColorBrush(COLOR_3DSHADOW));
    InflateRect(&box, -thickness, -thickness);
    FillRect(dc, &box, GetSysColorBrush(fillColour));
    return box;
}

} // namespace veldran
