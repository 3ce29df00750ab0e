// Sections of 32 bits; see the header.
#include "windows/system/back_buffer.h"

#include "base/failure.h"

#include <algorithm>

namespace stage {

BackBuffer::BackBuffer(int width, int height)
    : width_(std::max(width, 1)), height_(std::max(height, 1)), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width_;
    info.bmiHeader.biHeight = -height_; // top-down
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* pixels = nullptr;
    bitmap_ = Bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    if (!dc_ || !bitmap_)
        throw Failure(ExitCode::PluginFailed, "There is not enough memory for drawing.");
    pixels_ = static_cast<std::uint32_t*>(pixels);
    selected_.emplace(dc_.get(), bitmap_.get());
}

ScreenTarget BackBuffer::target() const {
    GdiFlush();
    return {{pixels_, static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_)}, width_, height_};
}

HBITMAP BackBuffer::finish() {
    GdiFlush();
    selected_.reset();
    return bitmap_.get();
}

void paintBuffered(HWND window, const std::function<void(BackBuffer& buffer, const RECT& area)>& draw) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(window, &paint);
    RECT area;
    GetClientRect(window, &area);
    if (area.right > 0 && area.bottom > 0) {
        BackBuffer buffer(area.right, area.bottom);
        draw(buffer, area);
        BitBlt(dc, 0, 0, area.right, area.bottom, buffer.dc(), 0, 0, SRCCOPY);
    }
    EndPaint(window, &paint);
}

void fillArea(HDC dc, const RECT& area, COLORREF colour) {
    const COLORREF previous = SetBkColor(dc, colour);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &area, nullptr, 0, nullptr);
    SetBkColor(dc, previous);
}

} // namespace stage
