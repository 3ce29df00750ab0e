// Packed bitmaps: sizes, headers, views.
#include "render/image_view.h"

#include <algorithm>

namespace veldran {
namespace {

constexpr int kLongestSide = 65535;

bool isKnownDepth(int bits) {
    return bits == 1 || bits == 8 || bits == 24 || bits == 32;
}

} // namespace

std::optional<std::size_t> packedBitmapBytes(int width, int height, int bits) {
    if (width < 1 || height < 1 || width > kLongestSide || height > kLongestSide || !isKnownDepth(bits))
        return std::nullopt;
    return sizeof(BitmapHeader) + colourTableBytes(bits) + bitmapStride(width, bits) * static_cast<std::size_t>(height);
}

void writeBitmapHeader(std::span<std::uint8_t> block, int width, int height, int bits) {
    BitmapHeader header{};
    header.size = sizeof header;
    header.width = width;
    header.height = height;
    header.planes = 1;
    header.bits = static_cast<std::uint16_t>(bits);
    header.imageSize = static_cast<std::uint32_t>(bitmapStride(width, bits) * static_cast<std::size_t>(height));
    std::memcpy(block.data(), &header, sizeof header);
}

std::optional<ConstImageView> viewPackedBitmap(std::span<const std::uint8_t> block) {
    BitmapHeader header{};
    if (block.size() < sizeof header)
        return std::nullopt;
    std::memcpy(&header, block.data(), sizeof header);
    const std::optional<std::size_t> bytes = packedBitmapBytes(header.width, header.height, header.bits);
    if (header.size != sizeof header || header.planes != 1 || header.compression != 0 || !bytes ||
        *bytes > block.size())
        return std::nullopt;
    if (header.coloursUsed != 0 && (header.bits > 8 || header.coloursUsed != 1u << header.bits))
        return std::nullopt; // the rows would begin elsewhere
    const std::size_t stride = bitmapStride(header.width, header.bits);
    ConstImageView view;
    view.width = header.width;
    view.height = header.height;
    view.bits = header.bits;
    view.stride = -static_cast<std::ptrdiff_t>(stride);
    view.colourTable = header.bits <= 8 ? block.data() + sizeof header : nullptr;
    view.top = block.data() + *bytes - stride;
    return view;
}

std::optional<ImageView> viewPackedBitmap(std::span<std::uint8_t> block) {
    const std::optional<ConstImageView> view = viewPackedBitmap(std::span<const std::uint8_t>(block));
    if (!view)
        return std::nullopt;
    return ImageView{block.data() + (view->top - block.data()),
                     view->width,
                     view->height,
                     view->stride,
                     view->bits,
                     view->colourTable};
}

} // namespace veldran
