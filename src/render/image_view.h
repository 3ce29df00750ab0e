// The one image type: a view of pixel rows that somebody else owns.
//
// Channels stand in memory as blue, green, red, and alpha in 32 bits; 8-bit pixels index `colourTable`, four bytes an
// entry: blue, green, red, unused; 1-bit pixels stand most significant bit first. Row 0 is the top row; `stride` is the
// distance in bytes from a row to the one below it and is negative for bitmaps stored bottom-up. Whoever makes a view
// guarantees that all its rows lie in memory that outlives it. Copying a view copies no pixels.
// Core: knows no windows.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>

namespace veldran {

template <class Byte>
struct BasicImageView {
    Byte* top = nullptr; // first byte of row 0
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0;
    int bits = 0; // 1, 8, 24 or 32
    const std::uint8_t* colourTable = nullptr;

    Byte* row(int y) const { return top + y * stride; }
    int bytesPerPixel() const { return bits / 8; }
    // 24 and 32 bits; 8-bit images through their own row().
    Byte* pixel(int x, int y) const { return row(y) + static_cast<std::ptrdiff_t>(x) * bytesPerPixel(); }
    bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }

    operator BasicImageView<const std::uint8_t>() const requires(!std::is_const_v<Byte>) {
        return {top, width, height, stride, bits, colourTable};
    }
};

using ImageView = BasicImageView<std::uint8_t>;
using ConstImageView = BasicImageView<const std::uint8_t>;

// What the rectangle (right and bottom outside) has in common with the image; without rows when that is nothing. Not
// for 1 bit.
template <class Byte>
BasicImageView<Byte> cropped(const BasicImageView<Byte>& image, int left, int top, int right, int bottom) {
    const int firstX = std::max(left, 0);
    const int firstY = std::max(top, 0);
    BasicImageView<Byte> part = image;
    part.width = std::min(right, image.width) - firstX;
    part.height = std::min(bottom, image.height) - firstY;
    if (part.width <= 0 || part.height <= 0)
        return {};
    part.top = image.pixel(firstX, firstY);
    return part;
}

// The header of a packed bitmap, followed by the colour table (2 or 256 entries of four bytes, for 1 and 8 bits) and
// the rows, bottom-up, each padded to four bytes. Little-endian, as Windows' BITMAPINFOHEADER.
struct BitmapHeader {
    std::uint32_t size; // 40
    std::int32_t width;
    std::int32_t height;  // positive: bottom-up
    std::uint16_t planes; // 1
    std::uint16_t bits;
    std::uint32_t compression; // 0
    std::uint32_t imageSize;   // stride x height
    std::int32_t horizontalResolution;
    std::int32_t verticalResolution;
    std::uint32_t coloursUsed;
    std::uint32_t coloursImportant;
};
static_assert(sizeof(BitmapHeader) == 40);

// Bytes of a row: padded to a multiple of four.
constexpr std::size_t bitmapStride(int width, int bits) {
    return (static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
}

constexpr std::size_t colourTableBytes(int bits) {
    return bits <= 8 ? std::size_t{4} << bits : 0;
}

// Bytes of a whole packed bitmap; nothing for sizes that no bitmap has (a side below 1 or above 65535).
std::optional<std::size_t> packedBitmapBytes(int width, int height, int bits);

// Writes the header of a bitmap of that size to the front of `block`, which holds at least packedBitmapBytes.
void writeBitmapHeader(std::span<std::uint8_t> block, int width, int height, int bits);

// The view of a packed bitmap; nothing when its header is none of ours (1, 8, 24 or 32 bits, bottom-up, uncompressed,
// the whole colour table or none) or claims more pixels than the block holds.
std::optional<ImageView> viewPackedBitmap(std::span<std::uint8_t> block);
std::optional<ConstImageView> viewPackedBitmap(std::span<const std::uint8_t> block);

// The colour of a pixel of an 8-, 24- or 32-bit image as blue, green, red.
inline const std::uint8_t* colourBytes(const ConstImageView& image, const std::uint8_t* pixel) {
    return image.bits == 8 ? image.colourTable + 4 * *pixel : pixel;
}

// Calls row(upper's bytes, picture's bytes, pixels) for every row that both images share when the upper one's top left
// pixel stands at (left, top) of the picture.
template <class Row>
void forSharedRows(const ImageView& picture, const ConstImageView& upper, int left, int top, Row row) {
    const int firstX = std::max(0, -left);
    const int firstY = std::max(0, -top);
    const int pixels = std::min(upper.width, picture.width - left) - firstX;
    const int endY = std::min(upper.height, picture.height - top);
    if (pixels <= 0)
        return;
    for (int y = firstY; y < endY; ++y)
        row(upper.pixel(firstX, y), picture.pixel(left + firstX, top + y), pixels);
}

} // namespace veldran
