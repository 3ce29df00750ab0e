// A dialog with an icon, a text and OK, laid out around the text when it opens.
#include "host/windows/message_box.h"

#include "base/windows/gdi.h"
#include "base/windows/module.h"

#include <algorithm>

namespace veldran {
namespace {

constexpr int kTextWidthLimit = 420; // pixels; longer lines wrap
constexpr int kMargin = 14;
constexpr int kTextSlack = 4; // a label of exactly the measured width may break its last word
constexpr int kIconSide = 32;
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 26;
constexpr int kLongestText = 512;

SIZE measureText(HWND control, const std::string& text) {
    const HDC dc = GetDC(control);
    RECT box{0, 0, kTextWidthLimit, 0};
    {
        const Selected font(dc, reinterpret_cast<HGDIOBJ>(SendMessageA(control, WM_GETFONT, 0, 0)));
        DrawTextA(dc, text.c_str(), -1, &box, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    }
    ReleaseDC(control, dc);
    return {box.right, box.bottom};
}

void centreOnOwner(HWND dialog) {
    RECT own{};
    RECT owner{};
    GetWindowRect(dialog, &own);
    const HWND parent = GetWindow(dialog, GW_OWNER);
    GetWindowRect(parent != nullptr ? parent : GetDesktopWindow(), &owner);
    const int x = (owner.left + owner.right - (own.right - own.left)) / 2;
    const int y = (owner.top + owner.bottom - (own.bottom - own.top)) / 2;
    SetWindowPos(dialog, nullptr, std::max(x, 0), std::max(y, 0), 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void layOut(HWND dialog, const std::string& text) {
    const HWND label = GetDlgItem(dialog, MESSAGE_TEXT);
    const SIZE size = measureText(label, text);
    const int textLeft = kMargin * 2 + kIconSide;
    const int bodyHeight = std::max<int>(size.cy, kIconSide);
    const int width = std::max<int>(textLeft + size.cx + kTextSlack, kButtonWidth + kMargin) + kMargin;
    const int buttonTop = kMargin * 2 + bodyHeight;
    RECT frame{0, 0, width, buttonTop + kButtonHeight + kMargin};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrA(dialog, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrA(dialog, GWL_EXSTYLE)));
    SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    MoveWindow(GetDlgItem(dialog, MESSAGE_ICON), kMargin, kMargin, kIconSide, kIconSide, FALSE);
    MoveWindow(label, textLeft, kMargin + (bodyHeight - size.cy) / 2, size.cx + kTextSlack, size.cy, FALSE);
    MoveWindow(GetDlgItem(dialog, IDOK), width - kMargin - kButtonWidth, buttonTop, kButtonWidth, kButtonHeight, FALSE);
    centreOnOwner(dialog);
}

INT_PTR CALLBACK messageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: {
        const auto& text = *reinterpret_cast<const std::string*>(lParam);
        SetDlgItemTextA(dialog, MESSAGE_TEXT, text.c_str());
        SendDlgItemMessageA(dialog, MESSAGE_ICON, STM_SETICON,
                            reinterpret_cast<WPARAM>(LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_WARNING))), 0);
        layOut(dialog, text);
        return TRUE;
    }
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)
            EndDialog(dialog, IDOK);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

std::string errorText(ErrorCode code) {
    char text[kLongestText];
    const UINT identity = kErrorTextBase + static_cast<UINT>(code);
    if (LoadStringA(moduleInstance(), identity, text, kLongestText) == 0)
        return "String table error - this application may be damaged";
    return text;
}

void showMessage(HWND owner, const std::string& text) {
    DialogBoxParamA(moduleInstance(), "MessageBox", owner, messageProc, reinterpret_cast<LPARAM>(&text));
}

void showError(HWND owner, ErrorCode code) {
    showMessage(owner, errorText(code));
}

} // namespace veldran
