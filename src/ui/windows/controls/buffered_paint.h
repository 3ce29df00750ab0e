// Painting a control in one go, so that it does not flicker while it is dragged.
#pragma once

#include "base/windows/gdi.h"

#include <optional>

namespace veldran {

// Begins painting `window` when made; what was drawn on dc() appears when it goes. Without memory it draws directly.
class BufferedPaint {
public:
    explicit BufferedPaint(HWND window) : window_(window), screen_(BeginPaint(window, &paint_)) {
        GetClientRect(window, &box_);
        memory_.reset(CreateCompatibleDC(screen_));
        bitmap_.reset(CreateCompatibleBitmap(screen_, box_.right, box_.bottom));
        if (memory_ && bitmap_)
            selected_.emplace(memory_.get(), bitmap_.get());
    }
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;
    ~BufferedPaint() {
        if (selected_)
            BitBlt(screen_, 0, 0, box_.right, box_.bottom, memory_.get(), 0, 0, SRCCOPY);
        selected_.reset(); // before the bitmap dies
        EndPaint(window_, &paint_);
    }

    HDC dc() const { return selected_ ? memory_.get() : screen_; }
    const RECT& box() const { return box_; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC screen_;
    RECT box_{};
    MemoryDc memory_;
    Bitmap bitmap_;
    std::optional<Selected> selected_;
};

} // namespace veldran
