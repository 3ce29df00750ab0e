// The window's parts and where they lie.
#include "windows/main_window/main_window.h"

#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"
#include "windows/system/window_class.h"
#include "windows/window_ids.h"

#include <commctrl.h>

#include <algorithm>

namespace stage {
namespace {

constexpr UINT kPlayerWakes = WM_APP;
constexpr UINT kSizesKnown = WM_APP + 1;

constexpr int kWidth = 1000; // at 96 dots per inch, as the next ones
constexpr int kHeight = 760;
constexpr int kRow = 38;
constexpr int kPadding = 6;
constexpr int kFormatWidth = 96;
constexpr int kSpeedWidth = 76;
constexpr int kSliderHeight = 28;
constexpr int kLabelWidth = 64;
constexpr int kDropHeight = 200;

constexpr CommandButton kTools[] = {{ID_NEW_GIF, Sign::NewAnimation, L"New animation (Ctrl+N)"},
                                    {ID_OPEN, Sign::Open, L"Open (Ctrl+O)"},
                                    {ID_SAVE, Sign::Save, L"Save (Ctrl+S)"},
                                    {},
                                    {ID_EDIT_PARAMETERS, Sign::Parameters, L"Animation parameters (Ctrl+E)"},
                                    {},
                                    {ID_ZOOM_OUT, Sign::ZoomOut, L"Zoom out (Ctrl+-)"},
                                    {ID_ZOOM_IN, Sign::ZoomIn, L"Zoom in (Ctrl++)"},
                                    {ID_ZOOM_ACTUAL, Sign::ActualSize, L"Actual size (Ctrl+1)"},
                                    {ID_ZOOM_FIT, Sign::Fit, L"Fit window (Ctrl+0)"}};
constexpr CommandButton kTransport[] = {{ID_FIRST_FRAME, Sign::First, L"First frame (Ctrl+Home)"},
                                        {ID_STEP_BACK, Sign::StepBack, L"Step back (Ctrl+Left)"},
                                        {ID_PLAY, Sign::Play, L"Play or pause (F5)"},
                                        {ID_STEP_FORWARD, Sign::StepForward, L"Step forward (Ctrl+Right)"},
                                        {ID_LAST_FRAME, Sign::Last, L"Last frame (Ctrl+End)"}};
constexpr const wchar_t* kFormats[] = {L"GIF", L"APNG", L"MNG", L"PNG files"};

HWND dropList(HWND parent, int id, const wchar_t* name) {
    const ModernLooks looks;
    return CreateWindowExW(
        0, WC_COMBOBOXW, name, WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_GROUP | WS_VSCROLL | CBS_DROPDOWNLIST, 0, 0, 0,
        0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
}

Icon programIcon(int side) {
    return Icon(static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_ICON), IMAGE_ICON, side, side, LR_DEFAULTCOLOR)));
}

HWND label(HWND parent, const wchar_t* text) {
    return CreateWindowExW(0, L"STATIC", text, WS_CHILD | WS_VISIBLE | WS_GROUP | SS_RIGHT | SS_CENTERIMAGE, 0, 0, 0, 0,
                           parent, nullptr, GetModuleHandleW(nullptr), nullptr);
}

void addItem(HWND list, const std::wstring& text) {
    SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

int heightOf(HWND window) {
    RECT area;
    GetWindowRect(window, &area);
    return area.bottom - area.top;
}

// In the middle of a row.
void placeList(HWND list, int left, int top, int rowHeight, int width, int dropHeight) {
    SetWindowPos(list, nullptr, left, top + (rowHeight - heightOf(list)) / 2, width, dropHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace

void MainWindow::create() {
    INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_BAR_CLASSES | ICC_PROGRESS_CLASS | ICC_STANDARD_CLASSES};
    {
        const ModernLooks looks;
        InitCommonControlsEx(&controls);
    }
    createWindowOf(*this, {.className = L"StageMain",
                           .title = L"Stage",
                           .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                           .extendedStyle = WS_EX_ACCEPTFILES | WS_EX_CONTROLPARENT});
    const HINSTANCE program = GetModuleHandleW(nullptr);
    SetMenu(window_, LoadMenuW(program, MAKEINTRESOURCEW(ID_MENU)));
    keys_ = LoadAcceleratorsW(program, MAKEINTRESOURCEW(ID_ACCELERATORS));

    // In the order of the Tab key.
    tools_.emplace(window_, kTools);
    formatLabel_ = label(window_, L"Format:");
    formatBox_ = dropList(window_, ID_FORMAT, L"File format");
    for (const wchar_t* format : kFormats)
        addItem(formatBox_, format);
    notice_.emplace(window_);
    view_.emplace(window_);
    createPlayRow();
    strip_.emplace(window_, [this](std::size_t frame) { chooseFrame(frame); });
    {
        const ModernLooks looks;
        status_.emplace(window_);
    }
    player_.emplace(window_, kPlayerWakes);
    meter_.emplace(window_, kSizesKnown);

    dpi_ = dotsPerInch(window_);
    SetWindowPos(window_, nullptr, 0, 0, scaled(kWidth, dpi_), scaled(kHeight, dpi_),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    applyScale();
}

void MainWindow::createPlayRow() {
    transport_.emplace(window_, kTransport);
    {
        const ModernLooks looks;
        slider_ = CreateWindowExW(
            0, TRACKBAR_CLASSW, L"Frame", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_GROUP | TBS_HORZ | TBS_NOTICKS, 0, 0,
            0, 0, window_, reinterpret_cast<HMENU>(INT_PTR{ID_SLIDER}), GetModuleHandleW(nullptr), nullptr);
    }
    speedLabel_ = label(window_, L"Speed:");
    speedBox_ = dropList(window_, ID_SPEED, L"Speed");
    for (const int percent : kSpeeds)
        addItem(speedBox_, std::to_wstring(percent) + L" %");
}

void MainWindow::applyScale() {
    font_ = messageFont(dpi_);
    hintFont_ = messageFont(dpi_ * 5 / 4);
    smallIcon_ = programIcon(scaled(16, dpi_));
    largeIcon_ = programIcon(scaled(32, dpi_));
    SendMessageW(window_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon_.get()));
    SendMessageW(window_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(largeIcon_.get()));
    for (const HWND control : {formatLabel_, formatBox_, speedLabel_, speedBox_})
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
    notice_->setLook(font_.get(), dpi_);
    strip_->setLook(font_.get(), dpi_);
    view_->setHint(L"Drop a GIF, PNG or MNG file here,\nor press Ctrl+N to make a new animation.", hintFont_.get());
    layOut();
}

// From top to bottom: tools, notice, picture, play row, strip, status line.
void MainWindow::layOut() {
    RECT area;
    GetClientRect(window_, &area);
    const int width = area.right;
    const int row = scaled(kRow, dpi_);
    const int padding = scaled(kPadding, dpi_);
    tools_->place(padding, 0, row, dpi_);
    const int formatWidth = scaled(kFormatWidth, dpi_);
    const int formatLeft = width - padding - formatWidth;
    placeList(formatBox_, formatLeft, 0, row, formatWidth, scaled(kDropHeight, dpi_));
    placeLabel(formatLabel_, formatLeft, 0);

    status_->place(font_.get(), dpi_);
    int top = row;
    int bottom = area.bottom - status_->height();
    const auto put = [&](HWND window, int from, int height) {
        SetWindowPos(window, nullptr, 0, from, width, std::max(height, 0), SWP_NOZORDER | SWP_NOACTIVATE);
    };
    put(notice_->window(), top, notice_->height());
    top += notice_->height();
    const bool hasStrip = isStripShown_ && document_.animation;
    ShowWindow(strip_->window(), hasStrip ? SW_SHOWNA : SW_HIDE);
    if (hasStrip) {
        bottom -= strip_->height();
        put(strip_->window(), bottom, strip_->height());
    }
    bottom -= row;
    placePlayRow(bottom, width);
    put(view_->window(), top, bottom - top);
    InvalidateRect(window_, nullptr, TRUE);
}

void MainWindow::placePlayRow(int top, int width) {
    const int row = scaled(kRow, dpi_);
    const int padding = scaled(kPadding, dpi_);
    const int speedWidth = scaled(kSpeedWidth, dpi_);
    const int sliderHeight = scaled(kSliderHeight, dpi_);
    const int left = 2 * padding + transport_->place(padding, top, row, dpi_);
    const int right = width - padding - speedWidth;
    const int sliderEnd = right - scaled(kLabelWidth, dpi_);
    SetWindowPos(slider_, nullptr, left, top + (row - sliderHeight) / 2, std::max(sliderEnd - left, 0), sliderHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    placeList(speedBox_, right, top, row, speedWidth, scaled(kDropHeight, dpi_));
    placeLabel(speedLabel_, right, top);
}

// Left of its list, in a row.
void MainWindow::placeLabel(HWND label, int listLeft, int top) {
    const int width = scaled(kLabelWidth - kPadding, dpi_);
    SetWindowPos(label, nullptr, listLeft - scaled(kPadding, dpi_) - width, top, width, scaled(kRow, dpi_),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT MainWindow::answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    window_ = window;
    if (!meter_) // not all parts are there
        return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
    case WM_SIZE:
        if (wParam != SIZE_MINIMIZED)
            layOut();
        return 0;
    case WM_GETMINMAXINFO: {
        auto* limits = reinterpret_cast<MINMAXINFO*>(lParam);
        limits->ptMinTrackSize = {scaled(520, dpi_), scaled(420, dpi_)};
        return 0;
    }
    case WM_DPICHANGED: {
        dpi_ = HIWORD(wParam);
        const auto* place = reinterpret_cast<const RECT*>(lParam);
        SetWindowPos(window, nullptr, place->left, place->top, place->right - place->left, place->bottom - place->top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
        applyScale();
        return 0;
    }
    case WM_ERASEBKGND: {
        RECT area;
        GetClientRect(window, &area);
        fillArea(reinterpret_cast<HDC>(wParam), area, GetSysColor(COLOR_BTNFACE));
        return 1;
    }
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        return tools_->draw(item) || transport_->draw(item) ? TRUE : FALSE;
    }
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_INACTIVE)
            focused_ = GetFocus();
        break;
    case WM_SETFOCUS:
        SetFocus(focused_ != nullptr && IsChild(window, focused_) ? focused_ : view_->window());
        return 0;
    case WM_COMMAND:
        onCommand(LOWORD(wParam), lParam == 0 ? 0 : HIWORD(wParam));
        return 0;
    case WM_INITMENUPOPUP:
        onMenuOpens(reinterpret_cast<HMENU>(wParam));
        return 0;
    case WM_HSCROLL:
        onHScroll(reinterpret_cast<HWND>(lParam));
        return 0;
    case WM_DROPFILES:
        onDrop(reinterpret_cast<HDROP>(wParam));
        return 0;
    case kPlayerWakes:
        onPlayerWakes();
        return 0;
    case kSizesKnown:
        onSizesKnown();
        return 0;
    case WM_QUERYENDSESSION:
        return work_ == nullptr && mayLoseDocument() ? TRUE : FALSE;
    case WM_CLOSE:
        if (work_ == nullptr && !isInPlugin_ && mayLoseDocument())
            DestroyWindow(window);
        return 0;
    case WM_DESTROY:
        onDestroy();
        return 0;
    default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace stage
