// Lines of text and two buttons; see the header.
#include "windows/main_window/notice_bar.h"

#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"
#include "windows/system/window_class.h"
#include "windows/window_ids.h"

namespace stage {
namespace {

constexpr COLORREF kGround = RGB(255, 247, 214);
constexpr COLORREF kNoticeEdge = RGB(226, 207, 140);
constexpr COLORREF kText = RGB(51, 44, 20);
constexpr Rgb kGroundRgb{255, 247, 214};
constexpr Rgb kSign{150, 104, 0};
constexpr int kLineHeight = 28; // at 96 dots per inch, as the next ones
constexpr int kNoticeSignSide = 16;
constexpr int kNoticePadding = 8;
constexpr int kActionWidth = 150;
constexpr int kCloseWidth = 70;

HWND button(HWND parent, int id, const wchar_t* text) {
    return CreateWindowExW(0, L"BUTTON", text, WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, 0, 0, 0, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
}

} // namespace

NoticeBar::NoticeBar(HWND parent) {
    window_ = createWindowOf(*this, {.className = L"StageNotice",
                                     .style = WS_CHILD | WS_CLIPCHILDREN,
                                     .extendedStyle = WS_EX_CONTROLPARENT,
                                     .parent = parent,
                                     .id = ID_NOTICE});
    const ModernLooks looks;
    action_ = button(window_, IDOK, L"");
    close_ = button(window_, IDCANCEL, L"Close");
}

void NoticeBar::show(std::vector<NoticeLine> lines, int action, const wchar_t* actionText) {
    lines_ = std::move(lines);
    actionCommand_ = action;
    SetWindowTextW(action_, actionText);
    ShowWindow(action_, action == 0 ? SW_HIDE : SW_SHOW);
    if (lines_.empty() && IsChild(window_, GetFocus()))
        SetFocus(GetParent(window_));
    ShowWindow(window_, lines_.empty() ? SW_HIDE : SW_SHOW);
    layOut();
    InvalidateRect(window_, nullptr, FALSE);
}

int NoticeBar::height() const {
    return lines_.empty() ? 0
                          : static_cast<int>(lines_.size()) * scaled(kLineHeight, dpi_) + scaled(kNoticePadding, dpi_);
}

void NoticeBar::setLook(HFONT font, int dpi) {
    font_ = font;
    dpi_ = dpi;
    for (const HWND child : {action_, close_})
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    layOut();
}

void NoticeBar::layOut() {
    RECT area;
    GetClientRect(window_, &area);
    const int padding = scaled(kNoticePadding, dpi_);
    const int height = scaled(kLineHeight, dpi_) - padding / 2;
    const int top = (area.bottom - height) / 2;
    int right = area.right - padding;
    for (const auto& [child, width] : {std::pair{close_, kCloseWidth}, std::pair{action_, kActionWidth}}) {
        right -= scaled(width, dpi_);
        SetWindowPos(child, nullptr, right, top, scaled(width, dpi_), height, SWP_NOZORDER | SWP_NOACTIVATE);
        right -= padding;
    }
}

void NoticeBar::paint() {
    paintBuffered(window_, [this](BackBuffer& buffer, const RECT& area) {
        fillArea(buffer.dc(), area, kGround);
        fillArea(buffer.dc(), {area.left, area.bottom - 1, area.right, area.bottom}, kNoticeEdge);
        const Selected font(buffer.dc(), font_ != nullptr ? font_ : GetStockObject(DEFAULT_GUI_FONT));
        SetTextColor(buffer.dc(), kText);
        SetBkMode(buffer.dc(), TRANSPARENT);
        const int side = scaled(kNoticeSignSide, dpi_);
        const int padding = scaled(kNoticePadding, dpi_);
        const int height = scaled(kLineHeight, dpi_);
        const int buttons = scaled(kCloseWidth + (actionCommand_ == 0 ? 0 : kActionWidth), dpi_) + 3 * padding;
        int top = padding / 2;
        for (const NoticeLine& line : lines_) {
            drawPicture(drawnSign(line.sign, side, kSign), {padding, top + (height - side) / 2, side, side},
                        {BackdropKind::Colour, kGroundRgb}, buffer.target());
            RECT text{2 * padding + side, top, area.right - buttons, top + height};
            DrawTextW(buffer.dc(), wideFromUtf8(line.text).c_str(), -1, &text,
                      DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
            top += height;
        }
    });
}

LRESULT NoticeBar::answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    window_ = window;
    switch (message) {
    case WM_PAINT:
        paint();
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SIZE:
        layOut();
        InvalidateRect(window, nullptr, FALSE);
        return 0;
    case WM_COMMAND:
        SendMessageW(GetParent(window), WM_COMMAND,
                     static_cast<WPARAM>(LOWORD(wParam) == IDOK ? actionCommand_ : ID_CLOSE_NOTICE), 0);
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

} // namespace stage
