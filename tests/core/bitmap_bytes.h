// Packed bitmaps as any program may hand them over, for tests of what reads them.
#pragma once

#include "render/image_view.h"

#include <cstring>
#include <vector>

namespace veldran {

using Bytes = std::vector<std::uint8_t>;

// What readers look at in a header.
struct BitmapLayout {
    int bits;
    std::int32_t width = 1;
    std::int32_t height = 1;
    std::uint32_t compression = 0;
    std::uint32_t coloursUsed = 0;
    std::uint32_t headerBytes = 40;
    std::uint16_t planes = 1;
};

// A header and whatever follows it, without a byte to spare, so that the sanitizer sees a look beyond the end.
inline Bytes bitmapOf(const BitmapLayout& layout, const Bytes& rest) {
    BitmapHeader header{};
    header.size = layout.headerBytes;
    header.width = layout.width;
    header.height = layout.height;
    header.planes = layout.planes;
    header.bits = static_cast<std::uint16_t>(layout.bits);
    header.compression = layout.compression;
    header.coloursUsed = layout.coloursUsed;
    Bytes block(sizeof header + rest.size());
    std::memcpy(block.data(), &header, sizeof header);
    std::ranges::copy(rest, block.begin() + sizeof header);
    return block;
}

// A black one of the plugin's own.
inline Bytes packedBitmap(int width, int height, int bits) {
    Bytes block(packedBitmapBytes(width, height, bits).value());
    writeBitmapHeader(block, width, height, bits);
    return block;
}

} // namespace veldran
