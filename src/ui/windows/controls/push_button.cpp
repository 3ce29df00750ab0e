// Edges, faces and texts of the drawn looks. Fills use the device context's own brush and pen, so that drawing makes no
// objects but the font's selection.
#include "ui/windows/controls/push_button.h"

#include "base/windows/gdi.h"
#include "ui/windows/text_scale.h"

#include <algorithm>

#include <commctrl.h>

namespace veldran {
namespace {

constexpr UINT_PTR kSubclass = 1;
constexpr int kLongestCaption = 64;
constexpr COLORREF kDarkTop = RGB(78, 84, 94);
constexpr COLORREF kDarkBottom = RGB(46, 50, 58);
constexpr COLORREF kDarkEdge = RGB(24, 26, 31);
constexpr COLORREF kDarkText = RGB(240, 242, 245);
constexpr COLORREF kDarkTextDisabled = RGB(132, 138, 148);
constexpr COLORREF kDarkAccent = RGB(120, 178, 255);

// What the drawing functions need to know of a button.
struct ButtonState {
    HDC dc;
    RECT box;
    bool pressed;
    bool disabled;
    bool isDefault;
};

// A look draws edge and face and says in which colour the text stands on it.
using DrawLook = COLORREF (*)(const ButtonState& state);

// `share` of 256 parts of `second`, the rest of `first`.
COLORREF mixed(COLORREF first, COLORREF second, int share) {
    const auto channel = [share](int from, int to) { return static_cast<BYTE>(from + (to - from) * share / 256); };
    return RGB(channel(GetRValue(first), GetRValue(second)), channel(GetGValue(first), GetGValue(second)),
               channel(GetBValue(first), GetBValue(second)));
}

void frame(HDC dc, const RECT& box, COLORREF colour, int width) {
    fillBox(dc, {box.left, box.top, box.right, box.top + width}, colour);
    fillBox(dc, {box.left, box.bottom - width, box.right, box.bottom}, colour);
    fillBox(dc, {box.left, box.top, box.left + width, box.bottom}, colour);
    fillBox(dc, {box.right - width, box.top, box.right, box.bottom}, colour);
}

void fillGradient(HDC dc, const RECT& box, COLORREF top, COLORREF bottom) {
    const int height = box.bottom - box.top;
    for (int y = 0; y < height; ++y)
        fillBox(dc, {box.left, box.top + y, box.right, box.top + y + 1},
                mixed(top, bottom, y * 256 / std::max(height, 1)));
}

void outlineRounded(HDC dc, const RECT& box, COLORREF colour, int diameter) {
    const Selected hollow(dc, GetStockObject(NULL_BRUSH));
    const Selected pen(dc, GetStockObject(DC_PEN));
    const COLORREF previous = SetDCPenColor(dc, colour);
    RoundRect(dc, box.left, box.top, box.right, box.bottom, diameter, diameter);
    SetDCPenColor(dc, previous);
}

COLORREF systemText(const ButtonState& state) {
    return GetSysColor(state.disabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT);
}

COLORREF drawFlat(const ButtonState& state) {
    const COLORREF face = mixed(GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_WINDOW), state.disabled ? 64 : 192);
    const COLORREF accent = GetSysColor(COLOR_HIGHLIGHT);
    fillBox(state.dc, state.box, state.pressed ? mixed(face, accent, 64) : face);
    const bool accented = !state.disabled && (state.isDefault || state.pressed);
    frame(state.dc, state.box, accented ? accent : GetSysColor(COLOR_BTNSHADOW), accented ? scaled(2) : 1);
    return systemText(state);
}

COLORREF drawRaised(const ButtonState& state) {
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    const COLORREF light = mixed(face, GetSysColor(COLOR_BTNHIGHLIGHT), 224);
    const COLORREF dark = mixed(face, GetSysColor(COLOR_BTNSHADOW), 112);
    RECT box = state.box;
    if (state.isDefault) {
        frame(state.dc, box, GetSysColor(COLOR_WINDOWFRAME), 1);
        InflateRect(&box, -1, -1);
    }
    DrawEdge(state.dc, &box, state.pressed ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT | BF_ADJUST);
    if (state.disabled)
        fillBox(state.dc, box, face);
    else
        fillGradient(state.dc, box, state.pressed ? dark : light, state.pressed ? face : dark);
    return systemText(state);
}

COLORREF drawDark(const ButtonState& state) {
    const int diameter = scaled(8);
    fillBox(state.dc, state.box, GetSysColor(COLOR_BTNFACE)); // shows outside of the round corners
    const int saved = SaveDC(state.dc);
    BeginPath(state.dc);
    RoundRect(state.dc, state.box.left, state.box.top, state.box.right, state.box.bottom, diameter, diameter);
    EndPath(state.dc);
    SelectClipPath(state.dc, RGN_AND);
    fillGradient(state.dc, state.box, state.pressed ? kDarkBottom : kDarkTop, state.pressed ? kDarkEdge : kDarkBottom);
    RestoreDC(state.dc, saved);
    const bool accented = state.isDefault && !state.disabled;
    outlineRounded(state.dc, state.box, accented ? kDarkAccent : kDarkEdge, diameter);
    if (accented) {
        RECT inner = state.box;
        InflateRect(&inner, -1, -1);
        outlineRounded(state.dc, inner, kDarkAccent, diameter - 2);
    }
    return state.disabled ? kDarkTextDisabled : kDarkText;
}

COLORREF drawEtched(const ButtonState& state) {
    RECT box = state.box;
    fillBox(state.dc, box, state.pressed ? GetSysColor(COLOR_3DLIGHT) : GetSysColor(COLOR_BTNFACE));
    if (state.isDefault) {
        frame(state.dc, box, GetSysColor(COLOR_WINDOWFRAME), 1);
        InflateRect(&box, -1, -1);
    }
    DrawEdge(state.dc, &box, state.pressed ? EDGE_SUNKEN : EDGE_ETCHED, BF_RECT);
    return systemText(state);
}

DrawLook lookFor(std::uint32_t buttonStyle) {
    switch (buttonStyle) {
    case 1:
        return drawFlat;
    case 2:
        return drawRaised;
    case 3:
        return drawDark;
    default:
        return drawEtched;
    }
}

void drawCaption(const DRAWITEMSTRUCT& item, RECT box, COLORREF colour) {
    char caption[kLongestCaption] = "";
    GetWindowTextA(item.hwndItem, caption, kLongestCaption);
    if ((item.itemState & ODS_SELECTED) != 0)
        OffsetRect(&box, 1, 1);
    const UINT prefix = (item.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0u;
    const Selected font(item.hDC, reinterpret_cast<HGDIOBJ>(SendMessageA(item.hwndItem, WM_GETFONT, 0, 0)));
    const TextStyle style(item.hDC, colour);
    DrawTextA(item.hDC, caption, -1, &box, DT_SINGLELINE | DT_CENTER | DT_VCENTER | prefix);
}

// The focus rectangle inverts what is under it, which black on white makes so whatever the look's colours are.
void drawFocus(const DRAWITEMSTRUCT& item) {
    if ((item.itemState & ODS_FOCUS) == 0 || (item.itemState & ODS_NOFOCUSRECT) != 0)
        return;
    RECT box = item.rcItem;
    InflateRect(&box, -scaled(4), -scaled(4));
    const COLORREF text = SetTextColor(item.hDC, RGB(0, 0, 0));
    const COLORREF background = SetBkColor(item.hDC, RGB(255, 255, 255));
    DrawFocusRect(item.hDC, &box);
    SetBkColor(item.hDC, background);
    SetTextColor(item.hDC, text);
}

// Tells the dialog manager what it asks a system button: that this is a push button and whether it is the default one.
LRESULT CALLBACK preparedButtonProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identity,
                                    DWORD_PTR isDefault) {
    switch (message) {
    case WM_GETDLGCODE:
        return DLGC_BUTTON | (isDefault != 0 ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
    case BM_SETSTYLE: // the style itself stays: it is what makes the button a drawn one
        SetWindowSubclass(button, preparedButtonProc, identity, (wParam & BS_TYPEMASK) == BS_DEFPUSHBUTTON ? 1 : 0);
        InvalidateRect(button, nullptr, FALSE);
        return 0;
    case WM_LBUTTONDBLCLK: // a drawn button would take a fast second click for something else
        return SendMessageA(button, WM_LBUTTONDOWN, wParam, lParam);
    case WM_NCDESTROY:
        RemoveWindowSubclass(button, preparedButtonProc, identity);
        return DefSubclassProc(button, message, wParam, lParam);
    default:
        return DefSubclassProc(button, message, wParam, lParam);
    }
}

} // namespace

DWORD pushButtonStyle(std::uint32_t buttonStyle) {
    return buttonStyle == 0 ? BS_PUSHBUTTON : BS_OWNERDRAW;
}

void preparePushButton(HWND button, std::uint32_t buttonStyle, ButtonRole role) {
    const bool isDefault = role == ButtonRole::Default;
    const DWORD style = pushButtonStyle(buttonStyle);
    SendMessageA(button, BM_SETSTYLE, style == BS_PUSHBUTTON && isDefault ? BS_DEFPUSHBUTTON : style, FALSE);
    if (style == BS_OWNERDRAW)
        SetWindowSubclass(button, preparedButtonProc, kSubclass, isDefault ? 1 : 0);
    if (isDefault)
        SendMessageA(GetParent(button), DM_SETDEFID, static_cast<WPARAM>(GetDlgCtrlID(button)), 0);
}

void drawPushButton(const DRAWITEMSTRUCT& item, std::uint32_t buttonStyle, bool isDefault) {
    const LRESULT code = SendMessageA(item.hwndItem, WM_GETDLGCODE, 0, 0);
    const bool prepared = (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
    const bool looksDefault = prepared ? (code & DLGC_DEFPUSHBUTTON) != 0 : isDefault;
    const ButtonState state{item.hDC, item.rcItem, (item.itemState & ODS_SELECTED) != 0,
                            (item.itemState & ODS_DISABLED) != 0, looksDefault};
    drawCaption(item, item.rcItem, lookFor(buttonStyle)(state));
    drawFocus(item);
}

} // namespace veldran
