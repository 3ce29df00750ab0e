// Heights follow from the measured font; gaps grow with the text size.
#include "ui/windows/editors/editor_layout.h"

#include "base/windows/gdi.h"
#include "ui/windows/controls/push_button.h"
#include "ui/windows/plugin_fonts.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <string>

#include <commctrl.h>

namespace veldran {
namespace {

constexpr int kLongestLabel = 128;

SIZE measure(HWND dialog, HFONT font, const char* text) {
    const HDC dc = GetDC(dialog);
    RECT box{};
    {
        const Selected selected(dc, font);
        DrawTextA(dc, text, -1, &box, DT_CALCRECT | DT_SINGLELINE);
    }
    ReleaseDC(dialog, dc);
    return {box.right, box.bottom};
}

std::uint32_t buttonStyleOf(const HostParams* host) {
    return host != nullptr ? host->buttonStyle : 0;
}

} // namespace

void prepareEditorButtons(HWND dialog, const HostParams* host) {
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        if ((SendMessageA(child, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0)
            preparePushButton(child, buttonStyleOf(host),
                              GetDlgCtrlID(child) == IDOK ? ButtonRole::Default : ButtonRole::Ordinary);
}

void drawEditorButton(const DRAWITEMSTRUCT& item, const HostParams* host) {
    drawPushButton(item, buttonStyleOf(host), item.CtlID == IDOK);
}

EditorLayout::EditorLayout(HWND dialog) : dialog_(dialog) {
    const PluginFonts* fonts = currentFonts();
    font_ = fonts != nullptr && fonts->controlFont ? fonts->controlFont.get()
                                                   : reinterpret_cast<HFONT>(SendMessageA(dialog, WM_GETFONT, 0, 0));
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        SendMessageA(child, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    lineHeight_ = static_cast<int>(measure(dialog, font_, "Ag").cy);
}

int EditorLayout::fieldHeight() const {
    return lineHeight_ + scaled(7);
}

int EditorLayout::buttonHeight() const {
    return lineHeight_ + scaled(10);
}

int EditorLayout::gap() const {
    return scaled(7);
}

int EditorLayout::margin() const {
    return scaled(12);
}

int EditorLayout::textWidth(const char* text) const {
    return static_cast<int>(measure(dialog_, font_, text).cx) + scaled(2);
}

int EditorLayout::labelWidth(int control) const {
    char text[kLongestLabel] = "";
    GetDlgItemTextA(dialog_, control, text, kLongestLabel);
    return textWidth(text);
}

int EditorLayout::buttonWidth(std::initializer_list<int> buttons) const {
    int width = scaled(72);
    for (const int button : buttons)
        width = std::max(width, labelWidth(button) + scaled(18));
    return width;
}

void EditorLayout::place(int control, int x, int y, int width, int height) const {
    MoveWindow(GetDlgItem(dialog_, control), x, y, width, height, FALSE);
}

int EditorLayout::placeButtons(std::initializer_list<int> buttons, int x, int y, int width) const {
    for (const int button : buttons) {
        place(button, x, y, width, buttonHeight());
        x += width + gap();
    }
    return x - gap();
}

void EditorLayout::placeLabel(int control, int x, int y, int width) const {
    place(control, x, y + (fieldHeight() - lineHeight_) / 2, width, lineHeight_);
}

int EditorLayout::placeNumber(const int (&controls)[4], int x, int y, int label, int field) const {
    const auto [labelControl, fieldControl, spinner, unit] = controls;
    placeLabel(labelControl, x, y, label);
    x += label + gap();
    place(fieldControl, x, y, field, fieldHeight());
    // The spinner takes its place inside the field's right end.
    SendDlgItemMessageA(dialog_, spinner, UDM_SETBUDDY, reinterpret_cast<WPARAM>(GetDlgItem(dialog_, fieldControl)), 0);
    x += field + scaled(4);
    placeLabel(unit, x, y, labelWidth(unit));
    return x + labelWidth(unit);
}

void EditorLayout::finish(int clientWidth, int clientHeight) const {
    RECT frame{0, 0, clientWidth, clientHeight};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrA(dialog_, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrA(dialog_, GWL_EXSTYLE)));
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    RECT owner{};
    const HWND parent = GetWindow(dialog_, GW_OWNER);
    GetWindowRect(parent != nullptr ? parent : GetDesktopWindow(), &owner);
    RECT screen{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &screen, 0);
    const LONG x = std::min((owner.left + owner.right - width) / 2, screen.right - width);
    const LONG y = std::min((owner.top + owner.bottom - height) / 2, screen.bottom - height);
    SetWindowPos(dialog_, nullptr, std::max(x, screen.left), std::max(y, screen.top), width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace veldran
