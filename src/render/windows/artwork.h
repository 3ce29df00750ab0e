// An artwork in use: unpacked, locked and checked.
#pragma once

#include "render/windows/frame_image.h"

namespace veldran {

class Artwork {
public:
    // The "CPX" resource with this identity; its image must have 8, 24 or 32 bits.
    explicit Artwork(int resource);
    // A picture that was drawn for use as artwork.
    explicit Artwork(GlobalBlock picture);

    // False when it is missing, corrupt or of another depth, or memory is exhausted.
    explicit operator bool() const { return static_cast<bool>(image_) && image_.view().bits >= 8; }
    const ImageView& view() const { return image_.view(); }

private:
    GlobalBlock block_;
    LockedImage image_; // unlocked before the block goes
};

} // namespace veldran
