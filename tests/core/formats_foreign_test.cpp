// Files as other programs write them, in forms that the writers here do not use: pixels, texts and places of PNG, APNG
// and MNG. Put together by hand after the formats' standards.
#include "core/animation_reader.h"
#include "core/deflate.h"
#include "core/frame_canvas.h"
#include "core/picture.h"
#include "core/png_coding.h"

#include <gtest/gtest.h>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Chunks = std::vector<std::pair<const char*, Bytes>>;

Bytes fileOf(std::span<const std::uint8_t> signature, const Chunks& chunks) {
    Bytes bytes(signature.begin(), signature.end());
    for (const auto& [type, data] : chunks)
        putChunk(bytes, type, data);
    return bytes;
}

Bytes headerOf(std::uint8_t width, std::uint8_t height, std::uint8_t depth, std::uint8_t colour) {
    return {0, 0, 0, width, 0, 0, 0, height, depth, colour, 0, 0, 0};
}

Pixel grey(std::uint8_t level, std::uint8_t opacity = 255) {
    return pixelOf({level, level, level}, opacity);
}

std::vector<Pixel> pixelsOf(const Frame& frame) {
    return pictureOf(frame).pixels;
}

TEST(StageForeignPng, PixelsOfEveryKind) {
    const struct {
        const char* name;
        Bytes header;
        Bytes transparency;
        Bytes rows;
        std::vector<Pixel> pixels;
    } cases[] = {
        {"grey of 16 bits with a key",
         headerOf(3, 1, 16, 0),
         {1, 2},
         {0, 1, 2, 1, 3, 200, 0},
         {grey(1, 0), grey(1), grey(200)}},
        {"RGB of 16 bits with a key",
         headerOf(2, 1, 16, 2),
         {1, 9, 2, 9, 3, 9},
         {0, 1, 9, 2, 9, 3, 9, 1, 9, 2, 9, 3, 8},
         {pixelOf({1, 2, 3}, 0), pixelOf({1, 2, 3})}},
        {"grey with opacity", headerOf(2, 1, 8, 4), {}, {0, 7, 128, 9, 255}, {grey(7, 128), grey(9)}},
        {"RGB with opacity, 16 bits", headerOf(1, 1, 16, 6), {}, {0, 1, 0, 2, 0, 3, 0, 4, 0}, {pixelOf({1, 2, 3}, 4)}},
        {"grey of 2 bits",
         headerOf(5, 1, 2, 0),
         {},
         {0, 0x1B, 0xC0},
         {grey(0), grey(85), grey(170), grey(255), grey(255)}},
        {"of one pixel, interlaced", {0, 0, 0, 1, 0, 0, 0, 1, 8, 0, 0, 0, 1}, {}, {0, 9}, {grey(9)}},
        // The mean of left and upper neighbour, rounded down: 10, 20 + 5; then (10 / 2) + 1, (6 + 25) / 2 + 1.
        {"filtered by means", headerOf(2, 2, 8, 0), {}, {3, 10, 20, 3, 1, 1}, {grey(10), grey(25), grey(6), grey(16)}},
    };
    for (const auto& c : cases) {
        Chunks chunks = {{"IHDR", c.header}};
        if (!c.transparency.empty())
            chunks.emplace_back("tRNS", c.transparency);
        chunks.insert(chunks.end(), {{"IDAT", deflated(c.rows)}, {"IEND", {}}});
        EXPECT_EQ(pixelsOf(readAnimation(fileOf(kPngSignature, chunks)).animation.frames.at(0)), c.pixels) << c.name;
    }
}

// A comment as every text chunk can hold it. One that is damaged counts as none.
TEST(StageForeignPng, TextsOfEveryKind) {
    const Bytes text = {'f', 0xFC, 'r'}; // Latin-1
    const std::string read = "f\xC3\xBCr";
    const Bytes inUtf8(read.begin(), read.end());
    const auto chunk = [](Bytes start, const Bytes& rest) {
        Bytes data = {'C', 'o', 'm', 'm', 'e', 'n', 't', 0};
        data.insert(data.end(), start.begin(), start.end());
        data.insert(data.end(), rest.begin(), rest.end());
        return data;
    };
    const struct {
        const char* type;
        Bytes data;
        std::string comment;
    } cases[] = {
        {"tEXt", chunk({}, text), read},
        {"zTXt", chunk({0}, deflated(text)), read},
        {"zTXt", chunk({1}, deflated(text)), ""}, // a method that does not exist
        {"zTXt", chunk({0}, {1, 2, 3}), ""},
        {"iTXt", chunk({0, 0, 'd', 'e', 0, 0}, inUtf8), read},
        {"iTXt", chunk({1, 0, 0, 0}, deflated(inUtf8)), read},
        {"iTXt", chunk({0}, {}), ""},
        {"iTXt", chunk({0, 0, 'd'}, {}), ""},
    };
    for (const auto& c : cases) {
        const Bytes file =
            fileOf(kPngSignature,
                   {{"IHDR", headerOf(1, 1, 8, 0)}, {c.type, c.data}, {"IDAT", deflated(Bytes{0, 0})}, {"IEND", {}}});
        EXPECT_EQ(readAnimation(file).animation.comment, c.comment) << c.type << " of " << c.data.size();
    }
}

// Sequence number, 2 x 1 at 0,0, 10 / 1000 s.
Bytes frameControl(std::uint8_t number, std::uint8_t disposal, std::uint8_t blend) {
    return {0, 0, 0, number, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 10, 3, 0xE8, disposal, blend};
}

TEST(StageForeignApng, FirstFrameIsUndoneToNothing) {
    Bytes second = {0, 0, 0, 2};
    const Bytes packed = deflated(Bytes{0, 9, 0, 8, 100}); // grey and opacity: nothing, half
    second.insert(second.end(), packed.begin(), packed.end());
    const Chunks chunks = {{"IHDR", headerOf(2, 1, 8, 4)},
                           {"acTL", {0, 0, 0, 2, 0, 0, 0, 5}},
                           {"fcTL", frameControl(0, 2, 0)},
                           {"IDAT", deflated(Bytes{0, 1, 255, 2, 255})},
                           {"fcTL", frameControl(1, 0, 1)},
                           {"fdAT", second},
                           {"IEND", {}}};
    const Animation animation = readAnimation(fileOf(kPngSignature, chunks)).animation;
    EXPECT_EQ(animation.plays, 5u);
    EXPECT_EQ(animation.frames.at(1).delay, 10u);
    EXPECT_EQ(pixelsOf(animation.frames.at(0)), (std::vector{grey(1), grey(2)}));
    EXPECT_EQ(pixelsOf(animation.frames.at(1)), (std::vector{kTransparentPixel, grey(8, 100)}));
    // Frames that no word of an animation comes before belong to a still picture.
    const Bytes still = fileOf(kPngSignature, {chunks[0], chunks[2], chunks[3], chunks[6]});
    EXPECT_EQ(readAnimation(still).format, OutputFormat::Png);
}

// Half over half: opacities join to 192 of 255, and what lies above weighs 128 / 192 of it.
TEST(StageForeignApng, HalfOpaquePixelsMix) {
    FrameCanvas canvas(3, 1, {});
    StoredFrame part;
    part.width = 3;
    part.height = 1;
    part.blend = Blend::Replace;
    canvas.show(part, {3, 1, {pixelOf({0, 90, 255}, 128), pixelOf({0, 90, 255}), kTransparentPixel}});
    part.blend = Blend::Over;
    const Pixel above = pixelOf({255, 90, 0}, 128);
    EXPECT_EQ(pixelsOf(canvas.show(part, {3, 1, {above, above, above}})),
              (std::vector{pixelOf({170, 90, 85}, 192), pixelOf({128, 90, 127}), above}));
}

Bytes mngHeader() {
    Bytes header(28);
    header[3] = 2;    // width
    header[7] = 1;    // height
    header[11] = 100; // ticks a second
    return header;
}

TEST(StageForeignMng, FramingPlacesAndSharedPalettes) {
    const Bytes row = deflated(Bytes{0, 0x80}); // one bit a pixel: entry 1
    const Chunks chunks = {
        {"MHDR", mngHeader()},
        {"TERM", {0}}, // shows the last frame: no repetition
        {"PLTE", {1, 1, 1, 7, 8, 9}},
        {"tRNS", {255, 100}},
        {"FRAM", {3, 0, 2, 0, 0, 0, 0, 0, 0, 50}}, // over the background, 50 ticks from now on
        {"IHDR", headerOf(1, 1, 1, 3)},
        {"PLTE", {}},
        {"tRNS", {}},
        {"IDAT", row},
        {"IEND", {}},
        {"FRAM", {0, 0, 1, 0, 0, 0, 0, 0, 0, 7}},       // 7 ticks once
        {"DEFI", {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}}, // at 1, 0
        {"IHDR", headerOf(1, 1, 1, 3)},
        {"PLTE", {}},
        {"IDAT", row},
        {"IEND", {}},
        {"FRAM", {}},
        {"FRAM", {0}},
        {"DEFI", {0, 0}},
        {"IHDR", headerOf(1, 1, 1, 3)},
        {"PLTE", {}},
        {"IDAT", row},
        {"IEND", {}},
        {"MEND", {}},
    };
    const Animation animation = readAnimation(fileOf(kMngSignature, chunks)).animation;
    ASSERT_EQ(animation.frames.size(), 3u);
    const Pixel entry = pixelOf({7, 8, 9});
    EXPECT_EQ(pixelsOf(animation.frames[0]), (std::vector{pixelOf({7, 8, 9}, 100), kTransparentPixel}));
    EXPECT_EQ(pixelsOf(animation.frames[1]), (std::vector{kTransparentPixel, entry}));
    EXPECT_EQ(pixelsOf(animation.frames[2]), (std::vector{kTransparentPixel, entry}));
    EXPECT_EQ(animation.frames[0].delay, 500u);
    EXPECT_EQ(animation.frames[1].delay, 70u);
    EXPECT_EQ(animation.frames[2].delay, 500u);
    EXPECT_EQ(animation.plays, 1u);
}

} // namespace
} // namespace stage
