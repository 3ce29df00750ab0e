// The sixteen custom colours of the system's dialog last as long as the process.
#include "ui/windows/controls/swatch.h"

#include "base/windows/gdi.h"
#include "settings/windows/parameter_reader.h"
#include "ui/windows/controls/control_edge.h"

#include <commdlg.h>

namespace veldran {
namespace {

COLORREF customColours[16];

void fillColour(HDC dc, const RECT& box, COLORREF colour) {
    const Brush brush(CreateSolidBrush(colour));
    FillRect(dc, &box, brush.get());
}

} // namespace

void drawSwatch(const DRAWITEMSTRUCT& item) {
    RECT box = drawControlEdge(item.hDC, item.rcItem, (item.itemState & ODS_SELECTED) != 0, COLOR_WINDOW);
    InflateRect(&box, -2, -2);
    if ((item.itemState & ODS_DISABLED) == 0)
        fillColour(item.hDC, box, readColour(GetParent(item.hwndItem), static_cast<int>(item.CtlID)));
    if ((item.itemState & ODS_FOCUS) != 0) {
        InflateRect(&box, 1, 1);
        DrawFocusRect(item.hDC, &box);
    }
}

bool chooseSwatchColour(HWND dialog, int controlId) {
    CHOOSECOLORA choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = dialog;
    choice.rgbResult = readColour(dialog, controlId);
    choice.lpCustColors = customColours;
    choice.Flags = CC_RGBINIT | CC_FULLOPEN;
    if (!ChooseColorA(&choice))
        return false;
    setColour(dialog, controlId, choice.rgbResult);
    return true;
}

} // namespace veldran
