// Creation and destruction of canvases. The section's header is the very header in the image block, so that handing the
// picture over is one copy of its rows.
#include "render/windows/canvas.h"

#include <cstring>
#include <limits>
#include <utility>

namespace veldran {
namespace {

constexpr int kCanvasBits = 24;

// GDI counts a bitmap's bytes in 31 bits: Wine's draws beyond the memory of larger ones.
constexpr std::size_t kMostBytes = std::numeric_limits<std::int32_t>::max();

// The image block, locked for the canvas's life.
bool attachImageBlock(Canvas& canvas, int width, int height) {
    const std::optional<std::size_t> bytes = packedBitmapBytes(width, height, kCanvasBits);
    if (!bytes || *bytes > kMostBytes)
        return false;
    canvas.image = allocateGlobal(*bytes).release();
    if (canvas.image == nullptr)
        return false;
    canvas.header = static_cast<BITMAPINFOHEADER*>(GlobalLock(canvas.image));
    if (canvas.header == nullptr)
        return false;
    writeBitmapHeader({reinterpret_cast<std::uint8_t*>(canvas.header), *bytes}, width, height, kCanvasBits);
    return true;
}

bool attachSection(Canvas& canvas) {
    canvas.bitmap = CreateDIBSection(canvas.memoryDc, reinterpret_cast<const BITMAPINFO*>(canvas.header),
                                     DIB_RGB_COLORS, &canvas.bits, nullptr, 0);
    if (canvas.bitmap == nullptr)
        return false;
    GdiFlush();
    SetMapMode(canvas.memoryDc, MM_ISOTROPIC);
    canvas.previousBitmap = SelectObject(canvas.memoryDc, canvas.bitmap);
    return canvas.previousBitmap != nullptr;
}

void setExtents(HDC dc, int width, int height) {
    SetWindowExtEx(dc, width, height, nullptr);
    SetViewportExtEx(dc, width, height, nullptr);
}

// One logical unit is one pixel. The isotropic mode works from the screen's size in whole millimetres; where those
// round to pixels that are not quite square it shortens one side, and the picture would end a pixel early. Then the
// extents are taken as they are given.
void makeUnitsPixels(HDC dc, int width, int height) {
    setExtents(dc, width, height);
    SIZE extent{};
    if (GetViewportExtEx(dc, &extent) && (extent.cx != width || extent.cy != height)) {
        SetMapMode(dc, MM_ANISOTROPIC);
        setExtents(dc, width, height);
    }
}

void copyPixelsToBlock(Canvas& canvas) {
    const BITMAPINFOHEADER& header = *canvas.header;
    const std::size_t stride = bitmapStride(header.biWidth, header.biBitCount);
    auto* pixels = reinterpret_cast<std::uint8_t*>(canvas.header) + sizeof header + colourTableBytes(header.biBitCount);
    std::memcpy(pixels, canvas.bits, stride * static_cast<std::size_t>(header.biHeight));
}

} // namespace

int createCanvas(int width, int height, Canvas& canvas) {
    canvas = {};
    canvas.screenDc = GetDC(nullptr);
    canvas.memoryDc = CreateCompatibleDC(canvas.screenDc);
    if (canvas.memoryDc == nullptr || !attachImageBlock(canvas, width, height) || !attachSection(canvas)) {
        destroyCanvas(canvas, 0);
        return 0;
    }
    makeUnitsPixels(canvas.memoryDc, width, height);
    SetRect(&canvas.bounds, 0, 0, width, height);
    return 1;
}

int destroyCanvas(Canvas& canvas, std::uint32_t flags) {
    GdiFlush();
    if (canvas.bits != nullptr && canvas.header != nullptr)
        copyPixelsToBlock(canvas);
    if (canvas.previousBitmap != nullptr)
        SelectObject(canvas.memoryDc, std::exchange(canvas.previousBitmap, nullptr));
    if (canvas.bitmap != nullptr)
        DeleteObject(std::exchange(canvas.bitmap, nullptr));
    canvas.bits = nullptr; // they were the section's
    if (canvas.memoryDc != nullptr)
        DeleteDC(std::exchange(canvas.memoryDc, nullptr));
    if (canvas.screenDc != nullptr)
        ReleaseDC(nullptr, std::exchange(canvas.screenDc, nullptr));
    if (canvas.image != nullptr && canvas.header != nullptr)
        GlobalUnlock(canvas.image);
    canvas.header = nullptr;
    if (canvas.image != nullptr && (flags & kKeepImage) == 0)
        GlobalFree(std::exchange(canvas.image, nullptr));
    return 1;
}

ImageView ScopedCanvas::pixels() const {
    GdiFlush();
    const int width = canvas_.bounds.right;
    const int height = canvas_.bounds.bottom;
    const std::size_t stride = bitmapStride(width, kCanvasBits);
    ImageView view;
    view.top = static_cast<std::uint8_t*>(canvas_.bits) + stride * static_cast<std::size_t>(height - 1);
    view.width = width;
    view.height = height;
    view.stride = -static_cast<std::ptrdiff_t>(stride);
    view.bits = kCanvasBits;
    return view;
}

GlobalBlock ScopedCanvas::finish() {
    destroyCanvas(canvas_, kKeepImage);
    return GlobalBlock(std::exchange(canvas_.image, nullptr));
}

} // namespace veldran
