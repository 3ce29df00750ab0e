// Frame images: packed bitmaps (header, colour table, bottom-up rows) in movable global-memory blocks. The caller owns
// every block that these functions return; an empty one means that memory was exhausted, a lock failed, or the source
// is no image. Sources are never changed.
#pragma once

#include "base/windows/global_block.h"
#include "render/image_view.h"

#include <optional>

namespace veldran {

// A zeroed image of 1, 8, 24 or 32 bits.
GlobalBlock createImage(int width, int height, int bits);

// A locked image and the view of its pixels, valid while the object lives.
class LockedImage {
public:
    LockedImage() = default;
    // False when the block cannot be locked or its header disagrees with its size.
    explicit LockedImage(HGLOBAL image);

    explicit operator bool() const { return view_.has_value(); }
    const ImageView& view() const { return *view_; }

private:
    LockedBlock lock_;
    std::optional<ImageView> view_;
};

// A new block of the same size with the same bytes; empty when the source is.
GlobalBlock copyImage(HGLOBAL source);

// The image scaled by whole per cent: sides are rounded, halves up. 32 bits stay 32, all else becomes 24.
GlobalBlock EmitFrame(HGLOBAL image, int percentX, int percentY);
// The same of pixels that stand elsewhere, of 8 bits and more; empty when there is no memory.
GlobalBlock scaledImage(const ConstImageView& source, int percentX, int percentY);

// A white image of 24 bits.
GlobalBlock blankFrame(int width, int height);

// An image of 32 bits with the colours of one image and, as alpha, the low byte of the pixels of another.
GlobalBlock mergeAlpha(HGLOBAL colourImage, HGLOBAL alphaImage);

} // namespace veldran
