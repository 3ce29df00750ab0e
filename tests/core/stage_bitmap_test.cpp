// The packed bitmaps in which the plugin hands over its frames, hostile ones included.
#include "core/failure.h"
#include "core/packed_bitmap.h"

#include <gtest/gtest.h>

#include <cstring>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

template <class Number>
void put(std::vector<std::byte>& block, std::size_t at, Number number) {
    std::memcpy(&block[at], &number, sizeof(number));
}

std::vector<std::byte> bitmap(std::int32_t width, std::int32_t height, std::uint16_t bits, std::size_t bytes) {
    std::vector<std::byte> block(bytes);
    for (std::size_t i = 40; i < bytes; ++i)
        block[i] = static_cast<std::byte>(i - 40);
    put(block, 0, std::uint32_t{40});
    put(block, 4, width);
    put(block, 8, height);
    put(block, 12, std::uint16_t{1});
    put(block, 14, bits);
    return block;
}

TEST(StageBitmap, RowsTurnAndColoursSwap) {
    // 2 x 2 of 24 bits: rows of 6 bytes padded to 8, the lower row first, blue first.
    const Frame rgb = unpackBitmap(bitmap(2, 2, 24, 56), OpacityByte::Used);
    EXPECT_EQ(rgb.format, PixelFormat::Rgb);
    EXPECT_EQ(rgb.pixels, (Bytes{10, 9, 8, 13, 12, 11, 2, 1, 0, 5, 4, 3}));
    const Frame rgba = unpackBitmap(bitmap(1, 2, 32, 48), OpacityByte::Used);
    EXPECT_EQ(rgba.pixels, (Bytes{6, 5, 4, 7, 2, 1, 0, 3}));
    const Frame opaque = unpackBitmap(bitmap(1, 2, 32, 48), OpacityByte::Unused);
    EXPECT_EQ(opaque.pixels, (Bytes{6, 5, 4, 2, 1, 0}));
    // 3 x 2 of 8 bits: the colour table takes 1024 bytes, which is 0 modulo 256.
    const Frame indexed = unpackBitmap(bitmap(3, 2, 8, 40 + 1024 + 8), OpacityByte::Unused);
    EXPECT_EQ(indexed.pixels, (Bytes{4, 5, 6, 0, 1, 2}));
    EXPECT_EQ(indexed.palette[2], (Rgb{10, 9, 8}));
}

TEST(StageBitmap, HeadersThatLieAreRefused) {
    std::vector<std::byte> coreHeader = bitmap(2, 2, 24, 56);
    put(coreHeader, 0, std::uint32_t{12});
    std::vector<std::byte> compressed = bitmap(2, 2, 24, 56);
    put(compressed, 16, std::uint32_t{1});
    std::vector<std::byte> fewColours = bitmap(3, 2, 8, 40 + 1024 + 8);
    put(fewColours, 32, std::uint32_t{22});
    std::vector<std::byte> coloursBeforePixels = bitmap(2, 2, 24, 56 + 88);
    put(coloursBeforePixels, 32, std::uint32_t{22});
    const struct {
        const char* name;
        std::vector<std::byte> block;
    } cases[] = {{"nothing", {}},
                 {"a short colour table", fewColours},
                 {"a colour table before colours", coloursBeforePixels},
                 {"an older header", coreHeader},
                 {"compressed", compressed},
                 {"one byte short", bitmap(2, 2, 24, 55)},
                 {"no room for colours", bitmap(1, 1, 8, 44)},
                 {"huge", bitmap(65535, 65535, 32, 4096)},
                 {"top-down", bitmap(2, -2, 24, 56)},
                 {"empty", bitmap(0, 2, 24, 56)},
                 {"sixteen bits", bitmap(2, 2, 16, 56)}};
    for (const auto& c : cases)
        EXPECT_THROW(unpackBitmap(c.block, OpacityByte::Used), Failure) << c.name;
}

} // namespace
} // namespace stage
