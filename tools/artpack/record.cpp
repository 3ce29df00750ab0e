// Lays out bitmap and record in memory.
// Never writes a structure's memory image: every number goes out byte by byte, whatever machine builds.
#include "artpack/record.h"

#include "artpack/error.h"

#include <zlib.h>

#include <limits>
#include <string_view>

namespace artpack {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kFormatVersion = 1;
constexpr std::size_t kReservedBytes = 32;
constexpr std::uint32_t kBitmapHeaderSize = 40;
constexpr std::size_t kGreys = 256;
constexpr std::size_t kTableEntrySize = 4;

void append16(Bytes& bytes, std::uint32_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

void append32(Bytes& bytes, std::uint32_t value) {
    append16(bytes, value);
    append16(bytes, value >> 16);
}

void appendZeros(Bytes& bytes, std::size_t count) {
    bytes.resize(bytes.size() + count);
}

std::size_t strideOf(int width, Depth depth) {
    const std::size_t bits = static_cast<std::size_t>(width) * static_cast<std::size_t>(depth);
    return (bits + 31) / 32 * 4;
}

void appendHeader(Bytes& bitmap, Size size, Depth depth, std::size_t imageSize) {
    append32(bitmap, kBitmapHeaderSize);
    append32(bitmap, static_cast<std::uint32_t>(size.width));
    append32(bitmap, static_cast<std::uint32_t>(size.height));
    append16(bitmap, 1); // planes
    append16(bitmap, static_cast<std::uint32_t>(depth));
    append32(bitmap, 0); // BI_RGB
    append32(bitmap, static_cast<std::uint32_t>(imageSize));
    appendZeros(bitmap, 16); // resolution unknown, all colours used
}

void appendGreyTable(Bytes& bitmap) {
    for (std::size_t entry = 0; entry < kGreys; ++entry) {
        const auto grey = static_cast<std::uint8_t>(entry);
        bitmap.insert(bitmap.end(), {grey, grey, grey, 0});
    }
}

void appendPixel(Bytes& bitmap, std::uint32_t pixel, Depth depth) {
    const std::uint32_t red = pixel >> 16 & 0xFF;
    const std::uint32_t green = pixel >> 8 & 0xFF;
    const std::uint32_t blue = pixel & 0xFF;
    if (depth == Depth::Grey8) {
        // The weights of ITU-R BT.601 in thousandths; they add up to 1000, so white stays 255.
        bitmap.push_back(static_cast<std::uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000));
        return;
    }
    bitmap.push_back(static_cast<std::uint8_t>(blue));
    bitmap.push_back(static_cast<std::uint8_t>(green));
    bitmap.push_back(static_cast<std::uint8_t>(red));
}

Bytes makeBitmap(const Picture& picture, Depth depth) {
    const std::size_t stride = strideOf(picture.size.width, depth);
    const std::size_t imageSize = stride * static_cast<std::size_t>(picture.size.height);
    const std::size_t rowStart = kBitmapHeaderSize + (depth == Depth::Grey8 ? kGreys * kTableEntrySize : 0);
    if (rowStart + imageSize > std::numeric_limits<std::uint32_t>::max())
        throw Error("the picture is too large for a record");

    Bytes bitmap;
    bitmap.reserve(rowStart + imageSize);
    appendHeader(bitmap, picture.size, depth, imageSize);
    if (depth == Depth::Grey8)
        appendGreyTable(bitmap);
    for (int y = picture.size.height - 1; y >= 0; --y) {
        const std::uint32_t* row = picture.pixels.data() + static_cast<std::ptrdiff_t>(y) * picture.size.width;
        const std::size_t rowEnd = bitmap.size() + stride;
        for (int x = 0; x < picture.size.width; ++x)
            appendPixel(bitmap, row[x], depth);
        bitmap.resize(rowEnd);
    }
    return bitmap;
}

Bytes deflateAll(const Bytes& bytes) {
    uLongf packedSize = compressBound(static_cast<uLong>(bytes.size()));
    Bytes packed(packedSize);
    if (compress2(packed.data(), &packedSize, bytes.data(), static_cast<uLong>(bytes.size()), Z_BEST_COMPRESSION) !=
        Z_OK)
        throw Error("the bitmap cannot be packed");
    packed.resize(packedSize);
    return packed;
}

} // namespace

std::vector<std::uint8_t> packRecord(const Picture& picture, Depth depth) {
    const Bytes bitmap = makeBitmap(picture, depth);
    const Bytes stream = deflateAll(bitmap);

    constexpr std::string_view magic = "CPX_HEAD";
    Bytes record(magic.begin(), magic.end());
    append32(record, static_cast<std::uint32_t>(bitmap.size()));
    append32(record, static_cast<std::uint32_t>(stream.size()));
    append32(record, kFormatVersion);
    appendZeros(record, kReservedBytes);
    record.insert(record.end(), stream.begin(), stream.end());
    return record;
}

} // namespace artpack
