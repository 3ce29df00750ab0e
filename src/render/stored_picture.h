// A picture of 24 bits that owns its memory, for what the core paints once and copies often. Core: knows no windows.
#pragma once

#include "render/image_view.h"

#include <vector>

namespace veldran {

struct StoredPicture {
    std::vector<std::uint8_t> bytes;
    ImageView view; // of `bytes`, wherever the picture is moved to

    StoredPicture() = default;
    // Black, top-down. Both sides are at least 1. Throws std::bad_alloc.
    StoredPicture(int width, int height)
        : bytes(bitmapStride(width, 24) * static_cast<std::size_t>(height)),
          view{bytes.data(), width, height, static_cast<std::ptrdiff_t>(bitmapStride(width, 24)), 24, nullptr} {}
    StoredPicture(StoredPicture&&) = default;
    StoredPicture& operator=(StoredPicture&&) = default;
};

} // namespace veldran
