// Buttons that the owner draws, because the system's tool bars cannot be reached with the Tab key; see the header.
#include "windows/main_window/command_bar.h"

#include "windows/system/screen_scale.h"

#include <commctrl.h>

#include <algorithm>

namespace stage {
namespace {

constexpr int kButtonSide = 30; // at 96 dots per inch, as the next ones
constexpr int kSignSide = 16;
constexpr int kGap = 10;
constexpr UINT_PTR kSubclass = 1;

Rgb rgbOfColour(COLORREF colour) {
    return {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
}

COLORREF mixed(COLORREF a, COLORREF b, int percentOfA) {
    const auto channel = [percentOfA](int x, int y) { return (x * percentOfA + y * (100 - percentOfA)) / 100; };
    return RGB(channel(GetRValue(a), GetRValue(b)), channel(GetGValue(a), GetGValue(b)),
               channel(GetBValue(a), GetBValue(b)));
}

void outline(HDC dc, const RECT& area, COLORREF colour) {
    const Brush brush(CreateSolidBrush(colour));
    FrameRect(dc, &area, brush.get());
}

} // namespace

CommandBar::CommandBar(HWND parent, std::span<const CommandButton> buttons) {
    const HINSTANCE program = GetModuleHandleW(nullptr);
    tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0,
                            0, parent, nullptr, program, nullptr);
    bool isFirst = true;
    for (const CommandButton& button : buttons) {
        HWND window = nullptr;
        if (button.command != 0) {
            const DWORD first = isFirst ? WS_GROUP | WS_TABSTOP : 0;
            isFirst = false;
            window = CreateWindowExW(0, L"BUTTON", button.tip, WS_CHILD | WS_VISIBLE | BS_OWNERDRAW | first, 0, 0, 0, 0,
                                     parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(button.command)), program,
                                     nullptr);
            SetWindowSubclass(window, buttonMessage, kSubclass, reinterpret_cast<DWORD_PTR>(this));
            TTTOOLINFOW tip{};
            tip.cbSize = sizeof(tip);
            tip.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
            tip.hwnd = parent;
            tip.uId = reinterpret_cast<UINT_PTR>(window);
            tip.lpszText = const_cast<wchar_t*>(button.tip);
            SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tip));
        }
        buttons_.push_back({button, window});
    }
}

int CommandBar::place(int left, int top, int height, int dpi) {
    const int side = std::min(scaled(kButtonSide, dpi), height);
    signSide_ = scaled(kSignSide, dpi);
    int x = left;
    for (const Button& button : buttons_) {
        if (button.window == nullptr) {
            x += scaled(kGap, dpi);
            continue;
        }
        SetWindowPos(button.window, nullptr, x, top + (height - side) / 2, side, side, SWP_NOZORDER | SWP_NOACTIVATE);
        InvalidateRect(button.window, nullptr, FALSE);
        x += side;
    }
    return x - left;
}

CommandBar::Button* CommandBar::buttonOf(int command) {
    const auto found = std::ranges::find_if(buttons_, [&](const Button& b) { return b.shown.command == command; });
    return found == buttons_.end() ? nullptr : &*found;
}

void CommandBar::setEnabled(int command, bool isEnabled) {
    Button* button = buttonOf(command);
    if (button == nullptr || (IsWindowEnabled(button->window) != FALSE) == isEnabled)
        return;
    EnableWindow(button->window, isEnabled ? TRUE : FALSE);
    InvalidateRect(button->window, nullptr, FALSE);
}

void CommandBar::setSign(int command, Sign sign) {
    Button* button = buttonOf(command);
    if (button == nullptr || button->shown.sign == sign)
        return;
    button->shown.sign = sign;
    InvalidateRect(button->window, nullptr, FALSE);
}

bool CommandBar::draw(const DRAWITEMSTRUCT& item) const {
    const auto found = std::ranges::find_if(buttons_, [&](const Button& b) { return b.window == item.hwndItem; });
    if (found == buttons_.end() || item.hwndItem == nullptr)
        return false;
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    const COLORREF accent = GetSysColor(COLOR_HIGHLIGHT);
    const bool isDown = (item.itemState & ODS_SELECTED) != 0;
    const bool isHot = item.hwndItem == hot_;
    const bool isEnabled = (item.itemState & ODS_DISABLED) == 0;
    const COLORREF ground = isDown ? mixed(accent, face, 35) : isHot && isEnabled ? mixed(accent, face, 15) : face;

    RECT area{0, 0, item.rcItem.right, item.rcItem.bottom};
    BackBuffer buffer(area.right, area.bottom);
    fillArea(buffer.dc(), area, ground);
    if (ground != face)
        outline(buffer.dc(), area, mixed(accent, face, 50));
    const COLORREF ink = mixed(GetSysColor(COLOR_BTNTEXT), face, isEnabled ? 80 : 30);
    const Backdrop under{BackdropKind::Colour, rgbOfColour(ground)};
    drawPicture(drawnSign(found->shown.sign, signSide_, rgbOfColour(ink)),
                {(area.right - signSide_) / 2, (area.bottom - signSide_) / 2, signSide_, signSide_}, under,
                buffer.target());
    if ((item.itemState & ODS_FOCUS) != 0) {
        InflateRect(&area, -2, -2);
        DrawFocusRect(buffer.dc(), &area);
    }
    BitBlt(item.hDC, 0, 0, item.rcItem.right, item.rcItem.bottom, buffer.dc(), 0, 0, SRCCOPY);
    return true;
}

void CommandBar::moveFocus(HWND from, int step) const {
    const auto count = static_cast<int>(buttons_.size());
    const auto found = std::ranges::find(buttons_, from, &Button::window);
    int place = static_cast<int>(found - buttons_.begin());
    do {
        place = (place + step + count) % count;
    } while (!IsWindowEnabled(buttons_[static_cast<std::size_t>(place)].window)); // `from` itself is
    SetFocus(buttons_[static_cast<std::size_t>(place)].window);
}

LRESULT CALLBACK CommandBar::buttonMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                           DWORD_PTR bar) {
    auto* self = reinterpret_cast<CommandBar*>(bar);
    if (message == WM_MOUSEMOVE && self->hot_ != window) {
        self->hot_ = window;
        TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE, window, 0};
        TrackMouseEvent(&track);
        InvalidateRect(window, nullptr, FALSE);
    } else if (message == WM_MOUSELEAVE && self->hot_ == window) {
        self->hot_ = nullptr;
        InvalidateRect(window, nullptr, FALSE);
    } else if (message == WM_KEYDOWN && (wParam == VK_LEFT || wParam == VK_RIGHT)) {
        self->moveFocus(window, wParam == VK_RIGHT ? 1 : -1);
        return 0;
    } else if (message == WM_GETDLGCODE) {
        return DefSubclassProc(window, message, wParam, lParam) | DLGC_WANTARROWS;
    } else if (message == WM_ERASEBKGND) {
        return 1; // all of it is drawn
    } else if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, buttonMessage, kSubclass);
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

} // namespace stage
