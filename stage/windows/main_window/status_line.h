// The line at the bottom of the window: what is happening, with a bar for its progress, and what is known of the
// animation.
#pragma once

#include "windows/system/handles.h"

#include <array>
#include <string>

namespace stage {

enum class StatusPart { Message, Picture, Frame, Time, Rate, Bytes };
inline constexpr std::size_t kStatusParts = 6;

class StatusLine {
public:
    explicit StatusLine(HWND parent);

    HWND window() const { return window_; }
    int height() const;
    // After the parent's size, the font or the scaling has changed. The font stays the caller's.
    void place(HFONT font, int dpi);
    // Shown at once, even while the thread is busy.
    void show(StatusPart part, const std::string& utf8);
    std::string shown(StatusPart part) const;
    // 0 of 0 hides the bar. `total` 0 with `done` above 0 shows that something is done, but not how much of it.
    void showProgress(std::uint64_t done, std::uint64_t total);

private:
    HWND window_ = nullptr;
    HWND bar_ = nullptr;
    std::array<std::string, kStatusParts> texts_;
};

} // namespace stage
