// The core's work on pixels: colour arithmetic, scaling by area, blends. Small odd pictures, every
// pixel looked at; strides are odd and both row orders appear, since nothing may count on either.
#include "bitmap_bytes.h"
#include "raster.h"
#include "render/blend.h"
#include "render/layers.h"
#include "render/resample.h"
#include "render/resample_fast.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace veldran {
namespace {

TEST(Colour, ShortDivisionIsExactForProductsOfBytes) {
    for (int value = 0; value <= 255 * 255; ++value)
        ASSERT_EQ(divideBy255(value), value / 255) << value;
}

TEST(Colour, ScalesEachChannel) {
    EXPECT_EQ(scaleColour(makeColour(200, 100, 50), 1.5), makeColour(255, 150, 75));
    EXPECT_EQ(scaleColour(makeColour(200, 100, 50), -2.0), 0u);
    EXPECT_EQ(scaleColour(0xAB000000 | makeColour(1, 2, 0), 1e300), makeColour(255, 255, 0));
    EXPECT_EQ(scaleColour(makeColour(3, 5, 7), 0.66), makeColour(1, 3, 4));
    EXPECT_EQ(makeColour(256 + 1, -1, 0x302), makeColour(1, 255, 2)); // low bytes count
}

// The average over the area below a target pixel, straight from its definition: overlaps of rectangles, counted in
// source units x target units, in 64 bits.
int exactAverage(const ConstImageView& source, int width, int height, int x, int y, int channel) {
    const auto overlap = [](int pixel, int pixels, int target, int targets) {
        const std::int64_t begin = std::max<std::int64_t>(std::int64_t{pixel} * targets, std::int64_t{target} * pixels);
        const std::int64_t end =
            std::min<std::int64_t>((pixel + std::int64_t{1}) * targets, (target + std::int64_t{1}) * pixels);
        return std::max<std::int64_t>(end - begin, 0);
    };
    std::int64_t sum = 0;
    for (int sy = 0; sy < source.height; ++sy)
        for (int sx = 0; sx < source.width; ++sx)
            sum += overlap(sx, source.width, x, width) * overlap(sy, source.height, y, height) *
                   colourBytes(source, source.pixel(sx, sy))[channel];
    const std::int64_t area = std::int64_t{source.width} * source.height;
    return static_cast<int>((2 * sum + area) / (2 * area));
}

TEST(Resample, EveryPixelIsTheExactAverage) {
    // Sides below a register and above it; whole ratios, equal and unequal ones; broken ratios; enlarging.
    const int sizes[][4] = {{3, 1, 2, 1},     {1, 1, 3, 2},    {2, 2, 1, 1},     {47, 33, 16, 11}, {47, 33, 1, 33},
                            {5, 47, 47, 5},   {26, 14, 13, 7}, {27, 15, 9, 5},   {28, 20, 7, 5},   {30, 12, 10, 12},
                            {24, 36, 24, 36}, {23, 17, 12, 9}, {40, 31, 13, 10}, {32, 9, 48, 27},  {17, 60, 16, 61}};
    for (const auto& [width, height, targetWidth, targetHeight] : sizes)
        for (const int bits : {8, 24, 32}) {
            Raster source(width, height, bits, RowOrder::BottomUp);
            source.fillRandom(static_cast<unsigned>(width * bits));
            Raster target(targetWidth, targetHeight, bits == 32 ? 32 : 24);
            resampleArea(source.view, target.view);
            EXPECT_TRUE(target.paddingIsWhole());
            for (int y = 0; y < targetHeight; ++y)
                for (int i = 0; i < targetWidth * target.view.bytesPerPixel(); ++i) {
                    const int x = i / target.view.bytesPerPixel();
                    const int channel = i % target.view.bytesPerPixel();
                    ASSERT_EQ(target.view.row(y)[i],
                              exactAverage(source.view, targetWidth, targetHeight, x, y, channel))
                        << width << "x" << height << "x" << bits << " at " << x << "," << y;
                }
        }
}

using Quick = bool (*)(const ConstImageView&, const ImageView&);

// In blocks without a byte to spare, so that the sanitizer sees a look beyond the end.
TEST(Resample, QuickWaysAgreeWithTheWideOne) {
    const struct {
        Quick quick;
        int width, height, targetWidth, targetHeight;
        bool reaches;
    } cases[] = {{resampleWholeRatio, 528, 96, 264, 48, true},      {resampleWholeRatio, 528, 96, 176, 32, true},
                 {resampleWholeRatio, 500, 100, 100, 25, true},     {resampleWholeRatio, 256, 16, 16, 2, true},
                 {resampleWholeRatio, 256, 16, 16, 1, false},       {resampleWholeRatio, 257, 16, 128, 8, false},
                 {resampleWholeRatio, 2, 4, 1, 2, false},           {resampleWholeRatio, 64, 64, 64, 64, false},
                 {resampleFractionalRatio, 528, 96, 174, 32, true}, {resampleFractionalRatio, 100, 500, 99, 499, true},
                 {resampleFractionalRatio, 64, 64, 96, 200, true},  {resampleFractionalRatio, 3, 70, 2, 60, false},
                 {resampleFractionalRatio, 64, 700, 5, 5, false},   {resampleFractionalRatio, 3001, 2801, 1, 2, false}};
    for (const auto& c : cases)
        for (const int bits : {24, 32}) {
            SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << "x" << bits << " to " << c.targetWidth
                                            << "x" << c.targetHeight);
            Bytes source = packedBitmap(c.width, c.height, bits);
            const auto from = viewPackedBitmap(std::span<const std::uint8_t>(source)).value();
            Bytes quick = packedBitmap(c.targetWidth, c.targetHeight, bits);
            const ImageView target = viewPackedBitmap(std::span<std::uint8_t>(quick)).value();
            if (!c.reaches) {
                EXPECT_FALSE(c.quick(from, target));
                continue;
            }
            std::mt19937 random(1);
            std::generate(source.begin() + sizeof(BitmapHeader), source.end(), [&] {
                const auto value = random() >> 23; // a quarter of the bytes 0, a quarter 255
                return static_cast<std::uint8_t>(value < 256 ? value : value % 2 * 255);
            });
            EXPECT_TRUE(c.quick(from, target));
            Bytes wide = packedBitmap(c.targetWidth, c.targetHeight, bits);
            resampleAreaWide(from, viewPackedBitmap(std::span<std::uint8_t>(wide)).value());
            EXPECT_EQ(quick, wide);
        }
}

// Around every half, where a quotient that is off by anything shows.
TEST(Resample, HalvesRoundUpForEveryArea) {
    constexpr int kTargets = 64; // averages 0 to 16 and 239 to 255, just below a half and from it on
    const auto floorOf = [](int i) { return i / 2 + (i < kTargets / 2 ? 0 : 255 - kTargets / 2); };
    for (int area = 2; area <= 128; ++area) {
        Raster source(area * kTargets, 1, 24);
        Raster target(kTargets, 1, 24);
        for (int i = 0; i < kTargets; ++i)
            for (int x = 0, left = floorOf(i) * area + (area + 1) / 2 - 1 + i % 2; x < area; ++x) {
                const int value = std::min(left, 255);
                left -= value;
                std::fill_n(source.view.pixel(i * area + x, 0), 3, static_cast<std::uint8_t>(value));
            }
        for (const Quick quick : {resampleWholeRatio, resampleFractionalRatio}) {
            ASSERT_TRUE(quick(source.view, target.view));
            for (int i = 0; i < kTargets; ++i)
                ASSERT_EQ(target.view.pixel(i, 0)[1], floorOf(i) + i % 2) << area;
        }
    }
    // The largest area whose sums fit 32 bits: half of it 254 and half 255, then one unit less.
    Raster source(65534, 128, 24);
    for (int y = 0; y < 128; ++y)
        std::fill_n(source.view.row(y), 3 * 65534, static_cast<std::uint8_t>(254 + y % 2));
    Raster target(1, 1, 24);
    ASSERT_TRUE(resampleFractionalRatio(source.view, target.view));
    EXPECT_EQ(target.row(0), Bytes(3, 255));
    source.view.pixel(777, 64)[1] = 253;
    ASSERT_TRUE(resampleFractionalRatio(source.view, target.view));
    EXPECT_EQ(target.row(0), (Bytes{255, 254, 255}));
}

TEST(Blend, MaskWeighsTheColour) {
    Raster picture(3, 2, 24, RowOrder::BottomUp), mask(2, 3, 24);
    for (int y = 0; y < 2; ++y)
        picture.setRow(y, {100, 200, 40, 100, 200, 40, 100, 200, 40});
    mask.setRow(0, {0, 255, 255, 255, 0, 0}); // the low byte counts
    mask.setRow(1, {0, 255, 255, 128, 0, 0});
    blendColourThroughMask(picture.view, mask.view, 0, 0, makeColour(250, 0, 9));
    EXPECT_EQ(picture.row(0), (Bytes{100, 200, 40, 9, 0, 250, 100, 200, 40}));
    // 100 x 127 / 255 = 49.8, 9 x 128 / 255 = 4.5; 200: 99.6; 40: 19.9, 250: 125.5
    EXPECT_EQ(picture.row(1), (Bytes{100, 200, 40, 53, 99, 144, 100, 200, 40}));
    EXPECT_TRUE(picture.paddingIsWhole());
}

TEST(Layers, BeyondThePictureIsDropped) {
    constexpr Colour kInk = 0x030201;
    Raster sheet(3, 4, 24), indices(3, 4, 8); // all of kPadding
    indices.view.row(3)[1] = 2;               // which has no colour
    IndexColours colours{};
    colours.fill(kNoColour);
    colours[kPadding] = kInk;
    ShadowFactors factors{};
    factors[kPadding] = 128;
    const std::pair<int, int> corners[] = {{-1, 2}, {5, -3}, {2, 1}, {7, 0}, {0, 5}, {-3, -4}, {99, -99}};
    for (const auto& corner : corners) {
        const auto [left, top] = corner;
        // What one channel is where the sheet lies, at the one pixel that is different, and elsewhere.
        const auto expect = [x0 = left, y0 = top](const auto& lay, int channel, int covered, int odd) {
            Raster picture(7, 5, 24, RowOrder::TopDown, 90);
            lay(picture.view);
            for (int y = 0; y < 5; ++y)
                for (int x = 0; x < 7; ++x) {
                    const bool isCovered = x >= x0 && x < x0 + 3 && y >= y0 && y < y0 + 4;
                    const int here = x == x0 + 1 && y == y0 + 3 ? odd : covered;
                    EXPECT_EQ(picture.view.pixel(x, y)[channel], isCovered ? here : 90) << channel << x << ' ' << y;
                }
            EXPECT_TRUE(picture.paddingIsWhole());
        };
        expect([&](const ImageView& to) { layImage(to, sheet.view, left, top); }, 2, kPadding, kPadding);
        expect([&](const ImageView& to) { layIndices(to, indices.view, left, top, colours); }, 0, 3, 90);
        expect([&](const ImageView& to) { layShadow(to, sheet.view, left, top, factors); }, 1, 45, 45); // 45.2
        for (const int bits : {8, 24, 32}) {
            Raster ink(3, 4, bits, RowOrder::BottomUp, 0);
            ink.view.pixel(1, 3)[0] = 255; // paper
            expect([&](const ImageView& to) { blendInk(to, ink.view, left, top, kInk); }, 0, 3, 90);
        }
    }
}

TEST(Layers, WindowsKeepWhatIsSeen) {
    Raster picture(4, 2, 24, RowOrder::BottomUp, 200), under(4, 2, 24, RowOrder::BottomUp, 100);
    Raster window(3, 1, 24, RowOrder::BottomUp);
    window.setRow(0, {0, 0, 0, 128, 128, 128, 255, 255, 255});
    keepInWindow(picture.view, under.view, window.view);
    EXPECT_EQ(picture.row(0), (Bytes{100, 100, 100, 150, 150, 150, 200, 200, 200, 200, 200, 200}));
    EXPECT_EQ(picture.row(1), Bytes(12, 200));
}

TEST(Blend, AlphaIsTheLowByteOfTheOtherImage) {
    for (const int colourBits : {8, 24, 32})
        for (const int alphaBits : {8, 24, 32})
            for (const int alphaWidth : {1, 4, 19, 23, 40}) {
                Raster colours(23, 3, colourBits, RowOrder::BottomUp), alpha(alphaWidth, 2, alphaBits);
                colours.fillRandom(7);
                alpha.fillRandom(8);
                Raster target(23, 3, 32);
                mergeAlphaPixels(colours.view, alpha.view, target.view);
                for (int y = 0; y < 3; ++y) {
                    Bytes expected;
                    for (int x = 0; x < 23; ++x) {
                        const std::uint8_t* pixel = colourBytes(colours.view, colours.view.pixel(x, y));
                        expected.insert(expected.end(), pixel, pixel + 3);
                        expected.push_back(alpha.view.contains(x, y) ? *colourBytes(alpha.view, alpha.view.pixel(x, y))
                                                                     : std::uint8_t{0});
                    }
                    ASSERT_EQ(target.row(y), expected) << colourBits << ' ' << alphaBits << ' ' << alphaWidth;
                }
                EXPECT_TRUE(target.paddingIsWhole());
            }
}

TEST(Layers, InvertingLeavesWhatIsMissingTo255) {
    Raster image(2, 2, 24, RowOrder::BottomUp);
    image.setRow(0, {0, 1, 2, 253, 254, 255});
    invertImage(image.view);
    EXPECT_EQ(image.row(0), (Bytes{255, 254, 253, 2, 1, 0}));
    EXPECT_EQ(image.row(1), Bytes(6, 255 - kPadding));
    EXPECT_TRUE(image.paddingIsWhole());
}

TEST(Blend, CheckerboardShowsThroughByOpacity) {
    Raster picture(9, 9, 32, RowOrder::TopDown, 0), target(9, 9, 24);
    std::ranges::copy(Bytes{9, 9, 9, 0, 9, 9, 9, 255, 55, 155, 255, 128}, picture.view.row(0));
    blendOverCheckerboard(picture.view, target.view);
    Bytes expected = {255, 255, 255, 9, 9, 9, 154, 204, 255}; // cut off
    expected.resize(24, 255);
    expected.resize(27, 204);
    EXPECT_EQ(target.row(0), expected);
    EXPECT_TRUE(target.row(8)[0] == 204 && target.row(8)[24] == 255);
}

TEST(Resample, LengthsAreRoundedAndNeverOverflow) {
    for (const auto& [length, percent, scaled] :
         {std::array{150, 33, 50}, {5, 10, 1}, {4, 10, 0}, {7, 0, 0}, {7, -5, 0}, {INT32_MAX, 1000, INT32_MAX}})
        EXPECT_EQ(scaledLength(length, percent), scaled) << length << ' ' << percent;
}

} // namespace
} // namespace veldran
