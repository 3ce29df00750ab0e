// A strip above the picture with what a person should know of the animation, and a button for what can be done.
#pragma once

#include "windows/main_window/icons.h"

#include <string>
#include <vector>

namespace stage {

struct NoticeLine {
    Sign sign = Sign::Warning;
    std::string text; // UTF-8
};

class NoticeBar {
public:
    explicit NoticeBar(HWND parent);

    HWND window() const { return window_; }
    // `action` names the command of the button; 0: there is none. Without lines the bar is not there.
    void show(std::vector<NoticeLine> lines, int action, const wchar_t* actionText);
    const std::vector<NoticeLine>& lines() const { return lines_; }
    // 0 when there is nothing to say. The font stays the caller's.
    int height() const;
    void setLook(HFONT font, int dpi);

    LRESULT answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    void layOut();
    void paint();

    HWND window_ = nullptr;
    HWND action_ = nullptr;
    HWND close_ = nullptr;
    int actionCommand_ = 0;
    std::vector<NoticeLine> lines_;
    HFONT font_ = nullptr;
    int dpi_ = 96;
};

} // namespace stage
