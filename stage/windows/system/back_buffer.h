// Drawing without flicker: into pixels in memory that are shown at once.
#pragma once

#include "view/screen_picture.h"
#include "windows/system/handles.h"

#include <functional>

namespace stage {

class BackBuffer {
public:
    // Sides of at least one pixel are made of smaller ones. Throws Failure(PluginFailed) without memory.
    BackBuffer(int width, int height);

    HDC dc() const { return dc_.get(); }
    // Ends drawing through `dc`: the system copies only bitmaps that no device context holds.
    HBITMAP finish();
    // The same pixels. Drawing through `dc` is finished first.
    ScreenTarget target() const;

private:
    int width_;
    int height_;
    MemoryDc dc_;
    Bitmap bitmap_;
    std::uint32_t* pixels_ = nullptr;
    std::optional<Selected> selected_;
};

// Answers WM_PAINT: what `draw` puts into the buffer, which is as large as the client area, is shown.
void paintBuffered(HWND window, const std::function<void(BackBuffer& buffer, const RECT& area)>& draw);

void fillArea(HDC dc, const RECT& area, COLORREF colour);

} // namespace stage
