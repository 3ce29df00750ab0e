// Sizes are computed in 64 bits, where sides of 65535 and 32 bits cannot overflow. Layouts are those of Windows'
// BITMAPINFOHEADER and its longer successors.
#include "render/foreign_bitmap.h"

#include "render/image_view.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

namespace veldran {
namespace {

constexpr std::uint32_t kPlain = 0;           // compression
constexpr std::uint32_t kMasks = 3;           // three channel masks
constexpr std::uint32_t kMasksAndOpacity = 6; // four
constexpr std::int64_t kLongestForeignSide = 65535;
constexpr std::size_t kHeaderWithOpacityMask = 56; // bytes, and more
constexpr std::uint8_t kOpaque = 255;

bool isForeignDepth(int bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

std::uint32_t wordAt(std::span<const std::uint8_t> block, std::size_t offset) {
    std::uint32_t word = 0;
    std::memcpy(&word, &block[offset], sizeof word);
    return word;
}

// Entries that the header announces; nothing when they are more than the depth can use.
std::optional<std::size_t> tableEntries(const BitmapHeader& header) {
    const std::uint32_t most = header.bits <= 8 ? 1u << header.bits : 256u;
    if (header.coloursUsed > most)
        return std::nullopt;
    return header.coloursUsed != 0 ? header.coloursUsed : header.bits <= 8 ? most : 0;
}

std::size_t masksBehindHeader(const BitmapHeader& header) {
    if (header.size != sizeof header)
        return 0; // longer headers hold them
    return header.compression == kMasks ? 12 : header.compression == kMasksAndOpacity ? 16 : 0;
}

bool isKnownHeader(const BitmapHeader& header) {
    const bool masked = header.compression == kMasks || header.compression == kMasksAndOpacity;
    const std::int64_t height = std::abs(std::int64_t{header.height});
    return header.planes == 1 && isForeignDepth(header.bits) && header.size >= sizeof header &&
           (header.compression == kPlain || (masked && (header.bits == 16 || header.bits == 32))) &&
           header.width >= 1 && header.width <= kLongestForeignSide && height >= 1 && height <= kLongestForeignSide;
}

} // namespace

std::optional<ForeignBitmap::Mask> ForeignBitmap::Mask::of(std::uint32_t bits) {
    if (bits == 0)
        return Mask{};
    const int shift = std::countr_zero(bits);
    const std::uint32_t most = bits >> shift;
    if ((std::uint64_t{most} & (std::uint64_t{most} + 1)) != 0)
        return std::nullopt; // a channel in pieces
    return Mask{shift, most};
}

std::uint8_t ForeignBitmap::Mask::valueIn(std::uint32_t pixel) const {
    if (most == 0)
        return 0;
    return static_cast<std::uint8_t>((std::uint64_t{pixel >> shift & most} * 255 + most / 2) / most);
}

std::optional<ForeignBitmap> ForeignBitmap::open(std::span<const std::uint8_t> block) {
    BitmapHeader header{};
    if (block.size() < sizeof header)
        return std::nullopt;
    std::memcpy(&header, block.data(), sizeof header);
    const std::optional<std::size_t> entries = tableEntries(header);
    if (!isKnownHeader(header) || !entries)
        return std::nullopt;
    ForeignBitmap bitmap;
    bitmap.width_ = header.width;
    bitmap.height_ = std::abs(header.height);
    bitmap.topDown_ = header.height < 0;
    bitmap.bits_ = header.bits;
    bitmap.stride_ = bitmapStride(header.width, header.bits);
    const std::size_t tableStart = std::size_t{header.size} + masksBehindHeader(header);
    const std::size_t rowsStart = tableStart + 4 * *entries;
    if (rowsStart > block.size() ||
        bitmap.stride_ * static_cast<std::size_t>(bitmap.height_) > block.size() - rowsStart)
        return std::nullopt;
    bitmap.rows_ = block.data() + rowsStart;
    for (std::size_t i = 0; header.bits <= 8 && i < *entries; ++i) {
        const std::uint8_t* entry = &block[tableStart + 4 * i];
        bitmap.table_.push_back({entry[0], entry[1], entry[2], kOpaque});
    }
    if ((header.bits == 16 || header.bits == 32) && !bitmap.readMasks(block, header.compression, header.size))
        return std::nullopt;
    return bitmap;
}

bool ForeignBitmap::readMasks(std::span<const std::uint8_t> block, std::uint32_t compression, std::size_t headerSize) {
    if (compression == kPlain) {
        if (bits_ == 16)
            return setMasks({0x1F, 0x3E0, 0x7C00, 0});
        return setMasks({0xFF, 0xFF00, 0xFF0000, 0xFF000000}) &&
               (hasOpacity() || setMasks({0xFF, 0xFF00, 0xFF0000, 0}));
    }
    const bool opacity = compression == kMasksAndOpacity || headerSize >= kHeaderWithOpacityMask;
    constexpr std::size_t kFirst = sizeof(BitmapHeader);
    if (block.size() < kFirst + (opacity ? 16 : 12))
        return false;
    return setMasks({wordAt(block, kFirst + 8), wordAt(block, kFirst + 4), wordAt(block, kFirst),
                     opacity ? wordAt(block, kFirst + 12) : 0});
}

bool ForeignBitmap::setMasks(const std::array<std::uint32_t, 4>& bits) {
    for (std::size_t c = 0; c < bits.size(); ++c) {
        const std::optional<Mask> mask = Mask::of(bits[c]);
        if (!mask)
            return false;
        masks_[c] = *mask;
    }
    return true;
}

bool ForeignBitmap::hasOpacity() const {
    for (int y = 0; y < height_; ++y) {
        const std::uint8_t* row = rows_ + static_cast<std::size_t>(y) * stride_;
        for (int x = 0; x < width_; ++x)
            if (row[4 * x + 3] != 0)
                return true;
    }
    return false;
}

std::uint32_t ForeignBitmap::valueAt(const std::uint8_t* row, int x) const {
    std::uint32_t value = 0;
    if (bits_ >= 8) {
        std::memcpy(&value, row + static_cast<std::size_t>(x) * static_cast<std::size_t>(bits_ / 8),
                    static_cast<std::size_t>(bits_ / 8));
        return value;
    }
    const int perByte = 8 / bits_; // the leftmost pixel in the highest bits
    return static_cast<std::uint32_t>(row[x / perByte] >> (8 - bits_ - x % perByte * bits_)) & ((1u << bits_) - 1);
}

void ForeignBitmap::readRow(int y, int x, std::span<Pixel> pixels) const {
    const std::uint8_t* row = rows_ + static_cast<std::size_t>(topDown_ ? y : height_ - 1 - y) * stride_;
    for (Pixel& pixel : pixels) {
        const std::uint32_t value = valueAt(row, x++);
        if (bits_ <= 8)
            pixel = value < table_.size() ? table_[value] : Pixel{0, 0, 0, kOpaque};
        else if (bits_ == 24)
            pixel = {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
                     static_cast<std::uint8_t>(value >> 16), kOpaque};
        else
            pixel = {masks_[0].valueIn(value), masks_[1].valueIn(value), masks_[2].valueIn(value),
                     masks_[3].most == 0 ? kOpaque : masks_[3].valueIn(value)};
    }
}

} // namespace veldran
