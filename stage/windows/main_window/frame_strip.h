// The row of all frames: a small picture of each, its number, delay and bytes. A click or an arrow key chooses one.
#pragma once

#include "document/document.h"
#include "view/screen_picture.h"
#include "windows/system/handles.h"

#include <functional>

namespace stage {

class FrameStrip {
public:
    // `choose` is called with the frame that a person chose.
    FrameStrip(HWND parent, std::function<void(std::size_t frame)> choose);

    HWND window() const { return window_; }
    // How high it wants to be, scroll bar and all.
    int height() const;
    // The font stays the caller's.
    void setLook(HFONT font, int dpi);
    void setBackdrop(const Backdrop& backdrop);
    void setAnimation(std::shared_ptr<const Animation> animation);
    // In milliseconds, one for each frame, in the file and as browsers show it; `bytes` the same, or empty where they
    // are not known.
    void setDelays(std::vector<std::uint32_t> stored, std::vector<std::uint32_t> inBrowsers);
    void setBytes(std::vector<std::uint64_t> bytes);
    // Marks the frame and brings it into view.
    void setCurrent(std::size_t frame);

    LRESULT answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    StripLayout layout() const;
    std::size_t frames() const { return animation_ ? animation_->frames.size() : 0; }
    const Picture& thumbnail(std::size_t frame);
    void paint();
    void drawCell(HDC dc, const ScreenTarget& target, std::size_t frame, const RECT& cell);
    void drawCaption(HDC dc, std::size_t frame, const RECT& cell);
    void scrollTo(int scroll);
    void updateBar();
    void onScrollBar(WPARAM wParam);
    bool onKey(WPARAM key);

    HWND window_ = nullptr;
    std::function<void(std::size_t)> choose_;
    std::shared_ptr<const Animation> animation_;
    std::vector<Picture> thumbnails_; // empty until it was seen
    std::vector<std::uint32_t> delays_;
    std::vector<std::uint32_t> browserDelays_;
    std::vector<std::uint64_t> bytes_;
    Backdrop backdrop_;
    std::size_t current_ = 0;
    int scroll_ = 0;
    int dpi_ = 96;
    int lineHeight_ = 16;
    HFONT font_ = nullptr;
};

} // namespace stage
