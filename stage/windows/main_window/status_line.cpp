// The system's status and progress controls; see the header.
#include "windows/main_window/status_line.h"

#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"
#include "windows/window_ids.h"

#include <commctrl.h>

#include <algorithm>

namespace stage {
namespace {

// The longest usual text of each part, from which its width comes. The first takes what is left.
constexpr const wchar_t* kUsual[kStatusParts] = {L"",
                                                 L"1024 \u00D7 1024, 1600 %",
                                                 L"Frame 1000 of 1000",
                                                 L"100.00 s, forever",
                                                 L"Browsers: 100.0 frames/s",
                                                 L"APNG: 10,000,000 bytes"};
constexpr int kPartPadding = 14; // at 96 dots per inch, as the next one
constexpr int kBarWidth = 120;
constexpr int kSteps = 1000;

int textWidth(HWND window, HFONT font, const wchar_t* text) {
    const HDC dc = GetDC(window);
    SIZE size{};
    {
        const Selected selected(dc, font);
        GetTextExtentPoint32W(dc, text, static_cast<int>(wcslen(text)), &size);
    }
    ReleaseDC(window, dc);
    return size.cx;
}

} // namespace

StatusLine::StatusLine(HWND parent) {
    const HINSTANCE program = GetModuleHandleW(nullptr);
    window_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP | WS_CLIPCHILDREN, 0, 0,
                              0, 0, parent, reinterpret_cast<HMENU>(INT_PTR{ID_STATUS}), program, nullptr);
    bar_ = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD | PBS_SMOOTH, 0, 0, 0, 0, window_,
                           reinterpret_cast<HMENU>(INT_PTR{ID_PROGRESS}), program, nullptr);
    SendMessageW(bar_, PBM_SETRANGE32, 0, kSteps);
}

int StatusLine::height() const {
    RECT area;
    GetWindowRect(window_, &area);
    return area.bottom - area.top;
}

void StatusLine::place(HFONT font, int dpi) {
    SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    SendMessageW(window_, WM_SIZE, 0, 0);
    RECT area;
    GetClientRect(window_, &area);
    std::array<int, kStatusParts> ends{};
    int end = area.right - scaled(kPartPadding, dpi); // beside the grip
    for (std::size_t i = kStatusParts; i-- > 0;) {
        ends[i] = std::max(end, 0);
        end -= i == 0 ? 0 : textWidth(window_, font, kUsual[i]) + scaled(kPartPadding, dpi);
    }
    ends.back() = -1;
    SendMessageW(window_, SB_SETPARTS, kStatusParts, reinterpret_cast<LPARAM>(ends.data()));
    const int gap = scaled(4, dpi);
    const int width = std::min(scaled(kBarWidth, dpi), ends[0] / 2);
    SetWindowPos(bar_, nullptr, ends[0] - width - gap, area.top + gap, width, area.bottom - 2 * gap,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void StatusLine::show(StatusPart part, const std::string& utf8) {
    const auto index = static_cast<std::size_t>(part);
    if (texts_[index] == utf8)
        return;
    texts_[index] = utf8;
    SendMessageW(window_, SB_SETTEXTW, index, reinterpret_cast<LPARAM>(wideFromUtf8(utf8).c_str()));
    UpdateWindow(window_);
}

std::string StatusLine::shown(StatusPart part) const {
    return texts_[static_cast<std::size_t>(part)];
}

void StatusLine::showProgress(std::uint64_t done, std::uint64_t total) {
    ShowWindow(bar_, done == 0 && total == 0 ? SW_HIDE : SW_SHOWNA);
    const double share = total == 0 ? 1 : static_cast<double>(std::min(done, total)) / static_cast<double>(total);
    SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(share * kSteps), 0);
    UpdateWindow(window_);
    UpdateWindow(bar_);
}

} // namespace stage
