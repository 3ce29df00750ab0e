// The bar graph's places and fillings, and bitmaps from hosts that know no mercy.
#include "instruments/bar_graph_model.h"
#include "raster.h"
#include "render/foreign_bitmap.h"

#include <gtest/gtest.h>

#include <cstring>

namespace veldran {
namespace {

TEST(BarGraphModel, SegmentsAreEvenAndFillFromNothingToAll) {
    for (const int width : {16, 17, 100, 256, 1024})
        for (const int depth : {2, 14, 256}) {
            SCOPED_TRACE(testing::Message() << width << ' ' << depth);
            const std::vector<BarSegment> segments = barSegments(width, depth);
            ASSERT_GE(segments.size(), 4u);
            EXPECT_EQ(segments.front().left, 0);
            int narrowest = width;
            int widest = 0;
            for (std::size_t i = 0; i < segments.size(); ++i) {
                narrowest = std::min(narrowest, segments[i].right - segments[i].left);
                widest = std::max(widest, segments[i].right - segments[i].left);
                EXPECT_TRUE(i == 0 || segments[i].left > segments[i - 1].right);
            }
            EXPECT_TRUE(narrowest >= 3 && widest - narrowest <= 1);
            for (const BarType type : {BarType::Gradient, BarType::Segments})
                for (const int frames : {2, 3, 32760}) {
                    const BarGraphParameters p{width, depth, frames, type, 0, 0, 0};
                    EXPECT_EQ(filledColumns(p, segments, 0), 0);
                    EXPECT_EQ(filledColumns(p, segments, frames - 1), width);
                }
        }
}

TEST(BarGraphModel, ImagesAreCutToTheBarsShape) {
    EXPECT_EQ(partShapedLike(200, 100, 256, 14), (CanvasRect{0, 44, 200, 55}));
    EXPECT_EQ(partShapedLike(100, 100, 16, 256), (CanvasRect{47, 0, 53, 100}));
    EXPECT_EQ(partShapedLike(1, 1, 1024, 2), (CanvasRect{0, 0, 1, 1}));
    EXPECT_EQ(partShapedLike(65535, 65535, 1024, 256), (CanvasRect{0, 24575, 65535, 40959}));
}

struct Layout {
    int bits;
    std::int32_t width = 1;
    std::int32_t height = 1;
    std::uint32_t compression = 0;
    std::uint32_t coloursUsed = 0;
    std::uint32_t headerSize = 40;
};

// Of a header and whatever follows it.
Bytes blockOf(const Layout& layout, const Bytes& rest) {
    BitmapHeader header{};
    header.size = layout.headerSize;
    header.width = layout.width;
    header.height = layout.height;
    header.planes = 1;
    header.bits = static_cast<std::uint16_t>(layout.bits);
    header.compression = layout.compression;
    header.coloursUsed = layout.coloursUsed;
    Bytes block(sizeof header);
    std::memcpy(block.data(), &header, sizeof header);
    block.insert(block.end(), rest.begin(), rest.end());
    return block;
}

using Pixel = ForeignBitmap::Pixel;

std::vector<Pixel> readAll(const Bytes& block) {
    const std::optional<ForeignBitmap> bitmap = ForeignBitmap::open(block);
    std::vector<Pixel> pixels;
    if (!bitmap)
        return pixels;
    std::vector<Pixel> row(static_cast<std::size_t>(bitmap->width()));
    for (int y = 0; y < bitmap->height(); ++y) {
        bitmap->readRow(y, 0, row);
        pixels.insert(pixels.end(), row.begin(), row.end());
    }
    return pixels;
}

constexpr Pixel kFirst{10, 20, 30, 255};
constexpr Pixel kSecond{1, 2, 3, 255};
const Bytes kTwoColours{10, 20, 30, 0, 1, 2, 3, 0};

Bytes joined(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST(ForeignBitmap, EveryDepthAndOrderIsRead) {
    const std::vector<Pixel> pair{kSecond, kFirst};
    constexpr Pixel kBlack{0, 0, 0, 255}; // beyond the table
    EXPECT_EQ(readAll(blockOf({8, 1, 1, 0, 2}, joined(kTwoColours, {200, 0, 0, 0}))), std::vector{kBlack});
    EXPECT_EQ(readAll(blockOf({1, 2, 1}, joined(kTwoColours, {0x80, 0, 0, 0}))), pair);
    EXPECT_EQ(readAll(blockOf({4, 2, 1, 0, 2}, joined(kTwoColours, {0x10, 0, 0, 0}))), pair);
    EXPECT_EQ(readAll(blockOf({8, 2, 1, 0, 2}, joined(kTwoColours, {1, 0, 0, 0}))), pair);
    EXPECT_EQ(readAll(blockOf({24, 1, 2}, {1, 2, 3, 0, 10, 20, 30, 0})), (std::vector{kFirst, kSecond}));
    EXPECT_EQ(readAll(blockOf({24, 2, -1}, {1, 2, 3, 10, 20, 30, 0, 0})), pair);
    EXPECT_EQ(readAll(blockOf({24, 1, -2}, {1, 2, 3, 0, 10, 20, 30, 0})), pair);
    EXPECT_EQ(readAll(blockOf({32, 2, 1}, {1, 2, 3, 0, 10, 20, 30, 0})), pair); // no opacity anywhere: opaque
    EXPECT_EQ(readAll(blockOf({32, 2, 1}, {1, 2, 3, 0, 10, 20, 30, 255}))[0], (Pixel{1, 2, 3, 0}));
    // Five bits a channel, then six of green, then a channel that comes first and an opacity of one bit.
    EXPECT_EQ(readAll(blockOf({16}, {0x1F, 0x7C, 0, 0})), std::vector{(Pixel{255, 0, 255, 255})});
    const Bytes wideGreen{0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0x1F, 0, 0, 0};
    EXPECT_EQ(readAll(blockOf({16, 1, 1, 3}, joined(wideGreen, {0xE0, 7, 0, 0}))),
              std::vector{(Pixel{0, 255, 0, 255})});
    const Bytes noBlue{0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(readAll(blockOf({16, 1, 1, 3}, joined(noBlue, {0xFF, 0xFF, 0, 0}))),
              std::vector{(Pixel{0, 255, 255, 255})});
    EXPECT_TRUE(readAll(blockOf({16, 1, 1, 3}, Bytes(11))).empty()); // masks that are cut off
    const Bytes swapped{0xFF, 0, 0, 0, 0, 0xFF, 0, 0, 0, 0, 0xFF, 0, 0, 0, 0, 0x80};
    EXPECT_EQ(readAll(blockOf({32, 1, 1, 6}, joined(swapped, {1, 2, 3, 0x80}))), std::vector{(Pixel{3, 2, 1, 255})});
    EXPECT_EQ(readAll(blockOf({32, 1, 1, 3, 0, 56}, joined(swapped, {1, 2, 3, 0x7F}))),
              std::vector{(Pixel{3, 2, 1, 0})});
}

TEST(ForeignBitmap, AbsurdHeadersAreRefused) {
    const Bytes plenty(4096, 7);
    constexpr std::int32_t kMost = 0x7FFFFFFF;
    const Layout refused[] = {
        {24, 0, 1},           {24, kMost, kMost},     {32, 0x10000, 1},
        {32, 1, -kMost - 1},  {24, 1000, 1000},       {2},
        {8, 1, 1, 1},         {24, 1, 1, 0, ~0u},     {1, 1, 1, 0, 3},
        {24, 1, 1, 0, 0, 39}, {24, 1, 1, 0, 0, 4200}, {16, 1, 1, 4},
        {32, 1, 1, 3}, // masks of 0x07070707 are in pieces
    };
    for (const Layout& layout : refused)
        EXPECT_FALSE(ForeignBitmap::open(blockOf(layout, plenty)))
            << layout.bits << ' ' << layout.width << ' ' << layout.height << ' ' << layout.compression;
}

TEST(ForeignBitmap, TruncatedBlocksAreRefused) {
    const Layout layouts[] = {{1, 9, 3}, {4, 3, -2}, {8, 5, 2, 0, 2}, {16, 3, 2, 3}, {24, 3, 2}, {32, 2, 2, 3, 0, 108}};
    for (const Layout& layout : layouts) {
        SCOPED_TRACE(layout.bits);
        // Rests of ever more bytes: refused up to the last byte that is needed, then read.
        std::size_t needed = 0;
        Bytes rest;
        const Bytes masks{0xF, 0, 0, 0, 0xF0, 0, 0, 0, 0, 0xF, 0, 0, 0, 0, 0, 0};
        for (; needed < 400; ++needed, rest.push_back(rest.size() < masks.size() ? masks[rest.size()] : 0)) {
            const Bytes block = blockOf(layout, rest);
            if (!readAll(block).empty())
                break;
        }
        const std::size_t stride = bitmapStride(layout.width, layout.bits);
        const std::size_t table = layout.coloursUsed != 0 ? 8 : layout.bits <= 8 ? std::size_t{4} << layout.bits : 0;
        const std::size_t between = layout.headerSize > 40 ? 68 : layout.compression == 3 ? 12 : 0;
        EXPECT_EQ(needed, between + table + stride * static_cast<std::size_t>(std::abs(layout.height)));
    }
    for (std::size_t size = 0; size < 40; ++size)
        EXPECT_FALSE(ForeignBitmap::open(Bytes(size, 40)));
}

TEST(BarGraphModel, BorderAndPaddingLieAroundTheBar) {
    const BarGraphGeometry g = barGraphGeometry({100, 20, 2, BarType::Solid, 3, 5, 50});
    EXPECT_TRUE(g.width == 116 && g.height == 36);
    EXPECT_EQ(g.padded, (CanvasRect{3, 3, 113, 33}));
    EXPECT_EQ(g.bar, (CanvasRect{8, 8, 108, 28}));
    EXPECT_DOUBLE_EQ(g.radius, 9);
}

} // namespace
} // namespace veldran
