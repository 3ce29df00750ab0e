// The off-screen drawing surface: a memory device context with a 24-bit bitmap, and the global block in which the
// finished picture is handed on.
#pragma once

#include "base/windows/global_block.h"
#include "render/image_view.h"

#include <cstdint>

namespace veldran {

// While it lives, `image` stays locked and `bitmap` selected. Logical units are pixels, origin top left.
struct Canvas {
    HGLOBAL image;            // header and rows; the caller's once the canvas was destroyed with kKeepImage
    BITMAPINFOHEADER* header; // `image`, locked
    HBITMAP bitmap;           // the section that is drawn on, made from `header`
    HGDIOBJ previousBitmap;   // what the memory DC had selected before
    void* bits;               // the section's own pixels: bottom-up, rows padded to four bytes
    HDC memoryDc;
    HDC screenDc;
    RECT bounds; // (0, 0, width, height)
};

inline constexpr std::uint32_t kKeepImage = 1;

// 1 and a canvas filled with black, or 0 and a record with nothing in it (memory exhausted, a side outside of 1 to
// 65535, or a picture of 2 GB and more).
int createCanvas(int width, int height, Canvas& canvas);

// Copies the pixels into the image block and releases everything but the block, which is freed too unless kKeepImage is
// set. Takes any partly made record. Always 1.
int destroyCanvas(Canvas& canvas, std::uint32_t flags);

// A canvas that is destroyed with its scope.
class ScopedCanvas {
public:
    ScopedCanvas(int width, int height) : valid_(createCanvas(width, height, canvas_) != 0) {}
    ScopedCanvas(const ScopedCanvas&) = delete;
    ScopedCanvas& operator=(const ScopedCanvas&) = delete;
    ~ScopedCanvas() { destroyCanvas(canvas_, 0); }

    explicit operator bool() const { return valid_; }
    HDC dc() const { return canvas_.memoryDc; }
    const RECT& bounds() const { return canvas_.bounds; }
    // The pixels as drawn so far, pending drawing included.
    ImageView pixels() const;
    // Ends drawing and hands over the picture.
    GlobalBlock finish();

private:
    Canvas canvas_{};
    bool valid_;
};

} // namespace veldran
