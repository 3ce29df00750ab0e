// The built-in palettes, depths, and the nearest entry of a palette.
// Checksums are CRC-32 of all 768 bytes, computed by a script that builds the palettes on its own.
#include "host/palette.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace veldran {
namespace {

TEST(Palette, BuiltInChoices) {
    const struct {
        int choice, colours, depth;
        unsigned long sum;
    } cases[] = {{0, 2, 1, 0x21E6ECFE},   {1, 16, 4, 0x1E940959},  {2, 32, 5, 0x2D0EDC7D},   {3, 64, 6, 0x108C5FFB},
                 {4, 128, 7, 0x40D893CF}, {5, 216, 8, 0x23EA7C80}, {6, 256, 8, 0xBB8FABC2},  {7, 256, 8, 0xC981EF12},
                 {8, 256, 8, 0xA4205DE0}, {9, 8, 3, 0x6F3EBED1},   {10, 256, 8, 0xBB8FABC2}, {-1, 256, 8, 0xBB8FABC2}};
    for (const auto& c : cases) {
        Palette palette;
        palette.fill({1, 2, 3}); // what stood there before must be gone
        int depth = 0;
        EXPECT_EQ(fixedPalette(&palette, &depth, c.choice), c.colours) << c.choice;
        EXPECT_EQ(depth, c.depth) << c.choice;
        EXPECT_EQ(crc32(0, reinterpret_cast<const Bytef*>(palette.data()), sizeof palette), c.sum) << c.choice;
        EXPECT_EQ(fixedPalette(nullptr, nullptr, c.choice), c.colours) << c.choice;
    }
}

TEST(Palette, DepthHoldsTheColours) {
    const int cases[][2] = {{1, 1},   {2, 1},   {3, 2},   {16, 4},   {17, 5},
                            {128, 7}, {129, 8}, {256, 8}, {257, 24}, {INT32_MAX, 24}};
    for (const auto& c : cases)
        EXPECT_EQ(depthForColours(c[0]), c[1]) << c[0];
}

TEST(Palette, NearestEntryIsTheLowestOfEquals) {
    Palette palette{};
    palette[0] = {10, 10, 10};
    palette[1] = {20, 10, 10};
    palette[2] = {10, 10, 10};
    palette[3] = {200, 200, 200};
    EXPECT_EQ(nearestEntry(palette, 4, makeColour(15, 10, 10)), 0); // 25 to each of the first three
    EXPECT_EQ(nearestEntry(palette, 4, makeColour(16, 10, 10)), 1);
    EXPECT_EQ(nearestEntry(palette, 3, makeColour(200, 200, 200)), 1);          // entries beyond the count take no part
    EXPECT_EQ(nearestEntry(palette, 4, makeColour(0, 10, 10) | 0xFF000000), 0); // the fourth byte is no colour
}

} // namespace
} // namespace veldran
