// What trace instruments dress their screens with: blur, glow, bezel, mask, scale grid.
#include "raster.h"
#include "render/bezel.h"
#include "render/light/glow.h"
#include "render/light/light_loops.h"
#include "render/scale_grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace veldran {
namespace {

void fill(const ImageView& image, Colour colour) {
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            const int channels[4] = {blueOf(colour), greenOf(colour), redOf(colour), 128};
            for (int c = 0; c < image.bytesPerPixel(); ++c)
                image.pixel(x, y)[c] = static_cast<std::uint8_t>(channels[c]);
        }
}

int lightness(Colour colour) {
    return redOf(colour) + greenOf(colour) + blueOf(colour);
}

// ---- Blur and glow

TEST(Glow, FlatImagesStayAsTheyAre) {
    const int sizes[][2] = {{1, 1}, {1, 40}, {40, 1}, {5, 3}, {37, 18}};
    for (const auto& [width, height] : sizes)
        for (const int bits : {24, 32})
            for (const int radius : {1, 2, 3, 4, 17, 66, 190, 381, 5000})
                for (int value = 0; value < 256; value += radius == 381 ? 1 : 51) {
                    Raster image(width, height, bits, RowOrder::BottomUp);
                    fill(image.view, makeColour(value, 255 - value, value / 2));
                    const Bytes before = image.bytes; // and the padding behind the rows
                    glowImage(image.view, 100, radius);
                    blurImage(image.view, radius);
                    ASSERT_EQ(image.bytes, before) << width << "x" << height << "x" << bits << " " << radius;
                }
}

TEST(Glow, RegistersOfBothLengthsGiveTheSameBytes) {
    if (&bestLight() == &kSse2Light)
        GTEST_SKIP() << "This processor has registers of one length.";
    const int sizes[][2] = {{1, 1}, {3, 90}, {64, 32}, {53, 34}, {130, 71}};
    for (const auto& [width, height] : sizes)
        for (const int bits : {24, 32})
            for (const int radius : {1, 3, 6, 9, 13, 40, 381}) {
                Raster images[2] = {{width, height, bits}, {width, height, bits}};
                for (Raster& image : images) {
                    const LightLoops& loops = &image == images ? kSse2Light : bestLight();
                    image.fillRandom(5);
                    glowImage(image.view, 130, radius, loops);
                    blurImage(image.view, radius, loops);
                }
                EXPECT_EQ(images[0].bytes, images[1].bytes) << width << "x" << height << "x" << bits << " " << radius;
            }
}

TEST(Glow, MirroredImagesGiveMirroredResults) {
    using Filter = void (*)(const ImageView&);
    const Filter filters[] = {[](const ImageView& image) { blurImage(image, 5); },
                              [](const ImageView& image) { blurImage(image, 18); },
                              [](const ImageView& image) { glowImage(image, 150, 11); }};
    for (const Filter filter : filters)
        for (const int bits : {24, 32})
            for (const auto& [width, height] : {std::pair{37, 21}, {38, 23}, {41, 22}, {46, 30}}) {
                Raster image(width, height, bits), turned(width, height, bits); // by 180 degrees
                image.fillRandom(11);
                const auto mirrored = [&, w = width, h = height](int i) {
                    return turned.view.pixel(w - 1 - i % w, h - 1 - i / w);
                };
                for (int i = 0; i < width * height; ++i)
                    std::copy_n(image.view.pixel(i % width, i / width), bits / 8, mirrored(i));
                filter(image.view);
                filter(turned.view);
                for (int i = 0; i < width * height; ++i)
                    ASSERT_TRUE(std::equal(mirrored(i), mirrored(i) + bits / 8, image.view.pixel(i % width, i / width)))
                        << width << "x" << height << "x" << bits << " at " << i;
            }
}

// A bar of light of 25 pixels in the dark, upright or level, so that one profile shows the weights of one direction.
TEST(Glow, BlurSpreadsLightLikeAGaussian) {
    constexpr int kLength = 201, kMiddle = 100;
    for (const bool upright : {true, false})
        for (const int radius : {3, 8, 17, 40, 66}) {
            Raster image(upright ? kLength : 9, upright ? 9 : kLength, 24);
            const auto at = [&](int i, int across) {
                return upright ? image.view.pixel(i, across) : image.view.pixel(across, i);
            };
            fill(image.view, 0);
            for (int i = 0; i < 25 * 9; ++i)
                std::fill_n(at(kMiddle - 12 + i / 9, i % 9), 3, std::uint8_t{255});
            blurImage(image.view, radius);
            double sum = 0, moment = 0;
            for (int i = 0; i < kLength; ++i) {
                sum += at(i, 4)[1];
                moment += at(i, 4)[1] * (i - kMiddle) * (i - kMiddle);
            }
            EXPECT_NEAR(sum, 25 * 255, 60) << radius; // averages are rounded
            const double own = (25.0 * 25 - 1) / 12;  // variance of the bar
            const double deviation = std::sqrt(std::max(moment / sum - own, 0.0));
            EXPECT_NEAR(deviation, radius / 3.0, 0.6 + radius * 0.05) << radius;
            // The sharp bar under a Gaussian of that width.
            for (int i = 0; i < kLength; ++i) {
                const double from = (i - kMiddle - 12.5) / deviation / std::numbers::sqrt2;
                const double to = (i - kMiddle + 12.5) / deviation / std::numbers::sqrt2;
                EXPECT_NEAR(at(i, 4)[1], 127.5 * (std::erf(to) - std::erf(from)), 7) << radius << " at " << i;
            }
            EXPECT_EQ(at(kMiddle + 12 + radius + 1, 4)[1], 0);
        }
}

TEST(Glow, LightsUpLinesAndTheirSurroundings) {
    const Colour dark = makeColour(20, 60, 40);
    const Colour line = makeColour(90, 160, 70);
    Raster image(61, 31, 24), glowing(61, 31, 24), strong(61, 31, 24);
    for (const Raster* picture : {&image, &glowing, &strong}) {
        fill(picture->view, dark);
        fill({picture->view.pixel(29, 0), 3, 31, picture->view.stride, 24}, line);
    }
    glowImage(glowing.view, 100, 12);
    glowImage(strong.view, 200, 12);
    const Bytes sharp = image.row(15), once = glowing.row(15), twice = strong.row(15);
    for (std::size_t i = 0; i < sharp.size(); ++i) {
        EXPECT_GE(once[i], sharp[i]);
        EXPECT_NEAR(twice[i] - sharp[i], 2 * (once[i] - sharp[i]), 1);
    }
    for (int x = 31; x < 43; ++x) // from the edge of the line outwards
        EXPECT_GE(lightness(glowing.at(x, 15)), lightness(glowing.at(x + 1, 15)));
    EXPECT_GT(lightness(glowing.at(30, 15)), lightness(line) + 20);
    EXPECT_GT(lightness(glowing.at(34, 15)), lightness(dark) + 20);
    EXPECT_EQ(glowing.at(31 + 13, 15), dark);
    // The largest lift there is, on a black line in a white picture, ends at white.
    fill(strong.view, 0xFFFFFF);
    fill({strong.view.pixel(30, 0), 1, 31, strong.view.stride, 24}, 0);
    glowImage(strong.view, INT32_MAX, 12);
    EXPECT_EQ(strong.at(30, 15), 0xFFFFFFu);
    for (const auto& [percent, radius] : {std::pair{100, 0}, {100, -4}, {0, 9}, {-50, 9}}) {
        const Bytes before = image.bytes;
        glowImage(image.view, percent, radius);
        EXPECT_EQ(image.bytes, before) << percent << ' ' << radius;
    }
}

// ---- Bezel

constexpr Colour kInside = 0x123456;
constexpr Colour kOutside = 0x00FFFF;
constexpr Colour kMaterial = 0xA0A8B0;
constexpr BezelStyle kStyles[] = {BezelStyle::Rectangle, BezelStyle::Round, BezelStyle::RoundedRectangle};

TEST(Bezel, CoversTheFrameLitFromTheTopLeft) {
    for (const BezelStyle style : kStyles) {
        SCOPED_TRACE(static_cast<int>(style));
        Raster picture(200, 201, 24, RowOrder::BottomUp);
        fill(picture.view, kInside);
        Bezel(200, 201, {style, 24, 20}, kMaterial, kOutside).draw(picture.view);
        EXPECT_TRUE(picture.paddingIsWhole());
        // Level and upright through the middle: frame from the first pixel to the last of its width.
        for (int x = 0; x < 200; ++x)
            EXPECT_EQ(picture.at(x, 100) == kInside, x >= 24 && x < 176) << x;
        for (int y = 0; y < 201; ++y) {
            EXPECT_EQ(picture.at(100, y) == kInside, y >= 20 && y < 181) << y;
            EXPECT_NE(picture.at(100, y), kOutside) << y;
        }
        EXPECT_EQ(picture.at(0, 0) == kOutside, style != BezelStyle::Rectangle);
        EXPECT_EQ(picture.at(36, 32) == kInside, style != BezelStyle::Round);
        // 4 pixels from the outer edge the roll faces outwards, 3 from the inner one the chamfer faces inwards.
        const auto light = [&](int x, int y) { return lightness(picture.at(x, y)); };
        EXPECT_GT(light(100, 4), lightness(kMaterial));
        EXPECT_LT(light(100, 196), lightness(kMaterial));
        EXPECT_GT(light(4, 100), light(195, 100));
        EXPECT_LT(light(100, 17), light(100, 183));
        EXPECT_LT(light(21, 100), light(178, 100));
        EXPECT_LT(light(23, 100), lightness(kMaterial) / 3); // the gap
    }
}

TEST(Bezel, MaskIsTheOutline) {
    const double square = 200.0 * 120;
    const std::pair<BezelStyle, double> cases[] = {
        {BezelStyle::Rectangle, square},
        {BezelStyle::Round, square * std::numbers::pi / 4},
        {BezelStyle::RoundedRectangle, square - (4 - std::numbers::pi) * 35 * 35}};
    for (const auto& [style, area] : cases) {
        SCOPED_TRACE(static_cast<int>(style));
        Raster mask(200, 120, 24, RowOrder::BottomUp);
        drawBezelMask(mask.view, {style, 20, 20});
        Raster picture(200, 120, 24);
        Bezel(200, 120, {style, 20, 20}, kMaterial, kOutside).draw(picture.view);
        double sum = 0;
        for (int y = 0; y < 120; ++y)
            for (int x = 0; x < 200; ++x) {
                const int value = mask.view.pixel(x, y)[0];
                sum += value / 255.0;
                EXPECT_EQ(value, mask.view.pixel(199 - x, 119 - y)[2]);
                EXPECT_EQ(value == 0, picture.at(x, y) == kOutside) << x << "," << y;
            }
        EXPECT_NEAR(sum, area, area * 0.001);
        EXPECT_TRUE(mask.paddingIsWhole());
    }
}

TEST(Bezel, AnyFrameFitsAnyPicture) {
    for (const BezelStyle style : kStyles)
        for (const int side : {1, 2, 3, 40})
            for (const int frame : {INT32_MIN, 0, 1, 20, INT32_MAX}) {
                Raster picture(side, 41, 24);
                fill(picture.view, kInside);
                Bezel(side, 41, {style, frame, frame}, kMaterial, kOutside).draw(picture.view);
                EXPECT_TRUE(side != 40 || (picture.at(20, 20) == kInside) == (frame <= 1)) << frame;
                EXPECT_TRUE(frame != INT32_MAX || picture.at(side / 2, 20) != kInside) << side;
                drawBezelMask(picture.view, {style, frame, frame});
                Bezel(side, 41, {style, 0, frame}, kMaterial, kOutside).draw(picture.view); // on two sides alone
                Bezel(side, 41, {style, frame, 0}, kMaterial, kOutside).draw(picture.view);
            }
}

// ---- Scale grid

constexpr Colour kInk = 0x405060;

Raster& drawnGrid(Raster& picture, int left, int top, int right, int bottom) {
    fill(picture.view, 0);
    drawScaleGrid(picture.view, left, top, right, bottom, kInk);
    return picture;
}

TEST(ScaleGrid, DivisionsAndTicks) {
    const struct {
        int width, height, across, down, ticksAcross;
    } cases[] = {{161, 161, 8, 8, 40}, {321, 161, 16, 8, 80}, {97, 97, 8, 8, 16},
                 {161, 49, 14, 4, 28}, {13, 13, 2, 2, 2},     {120, 250, 8, 16, 16}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        Raster picture(c.width + 10, c.height + 12, 24);
        drawnGrid(picture, 4, 5, 4 + c.width, 5 + c.height);
        const auto inked = [&](int x, int y) { return picture.at(x, y) != 0; };
        // Between border and first level line only upright ones are met; one pixel beside an axis, all of its ticks.
        const int axis = 5 + (c.height - 1) / 2;
        int across = 0, down = 0, ticks = 0;
        for (int x = 0; x < picture.view.width; ++x) {
            across += inked(x, 5 + 1 + (c.height > 60));
            ticks += picture.at(x, axis - 1) == kInk;
            EXPECT_TRUE(!inked(x, 4) && !inked(x, 5 + c.height)) << x;
        }
        for (int y = 0; y < picture.view.height; ++y) {
            down += inked(4 + 1 + (c.width > 60), y);
            EXPECT_TRUE(!inked(3, y) && !inked(4 + c.width, y)) << y;
        }
        EXPECT_EQ((std::array{across, down, ticks}), (std::array{c.across + 1, c.down + 1, c.ticksAcross + 1}));
        EXPECT_EQ(picture.at(4 + c.width / 4, axis), kInk);
    }
}

TEST(ScaleGrid, StaysWithinThePicture) {
    const int rectangles[][4] = {{-30, -20, 60, 70}, {10, 10, 11, 90}, {0, 0, 1, 1}, {200, 200, 300, 300}};
    Raster picture(40, 30, 24, RowOrder::BottomUp);
    for (const auto& [left, top, right, bottom] : rectangles)
        EXPECT_TRUE(drawnGrid(picture, left, top, right, bottom).paddingIsWhole());
    for (const auto& [right, bottom] : {std::pair{10, 20}, {20, 10}, {5, 5}}) // nothing to draw in
        for (int y = 0; y < 30; ++y)
            EXPECT_EQ(drawnGrid(picture, 10, 10, right, bottom).row(y), Bytes(120, 0));
}

} // namespace
} // namespace veldran
