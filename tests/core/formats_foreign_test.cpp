// Files from other hands, put together after the formats' standards: forms that the writers here do not use, and files
// that were cut off or made to harm, which are refused with a message.
#include "base/failure.h"
#include "document/picture.h"
#include "formats/animation_reader.h"
#include "formats/animation_writer.h"
#include "formats/frame_canvas.h"
#include "formats/png/deflate.h"
#include "formats/png/png_coding.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace std::string_view_literals;

namespace stage {
namespace {

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

// The pixels and the delay of every frame.
using Shown = std::vector<std::pair<std::vector<Pixel>, std::uint32_t>>;

Shown shownBy(const Bytes& file) {
    Shown shown;
    for (const Frame& frame : readAnimation(file).animation.frames)
        shown.emplace_back(pictureOf(frame).pixels, frame.delay);
    return shown;
}

TEST(StageForeignPng, PixelsOfEveryKind) {
    const struct {
        Bytes header, transparency, rows;
        std::vector<Pixel> pixels;
    } cases[] = {// Grey and RGB of 16 bits with a colour that is transparent.
                 {headerOf(3, 1, 16, 0), {1, 2}, {0, 1, 2, 1, 3, 200, 0}, {grey(1, 0), grey(1), grey(200)}},
                 {headerOf(2, 1, 16, 2),
                  {1, 9, 2, 9, 3, 9},
                  {0, 1, 9, 2, 9, 3, 9, 1, 9, 2, 9, 3, 8},
                  {pixelOf({1, 2, 3}, 0), pixelOf({1, 2, 3})}},
                 // With opacity; of 2 bits; of one pixel, interlaced.
                 {headerOf(2, 1, 8, 4), {}, {0, 7, 128, 9, 255}, {grey(7, 128), grey(9)}},
                 {headerOf(1, 1, 16, 6), {}, {0, 1, 0, 2, 0, 3, 0, 4, 0}, {pixelOf({1, 2, 3}, 4)}},
                 {headerOf(5, 1, 2, 0), {}, {0, 0x1B, 0xC0}, {grey(0), grey(85), grey(170), grey(255), grey(255)}},
                 {{0, 0, 0, 1, 0, 0, 0, 1, 8, 0, 0, 0, 1}, {}, {0, 9}, {grey(9)}},
                 // The mean of left and upper neighbour, rounded down: 10, 20 + 5; then (10 / 2) + 1, (6 + 25) / 2 + 1.
                 {headerOf(2, 2, 8, 0), {}, {3, 10, 20, 3, 1, 1}, {grey(10), grey(25), grey(6), grey(16)}}};
    for (const auto& c : cases) {
        Chunks chunks = {{"IHDR", c.header}};
        if (!c.transparency.empty())
            chunks.emplace_back("tRNS", c.transparency);
        chunks.insert(chunks.end(), {{"IDAT", deflated(c.rows)}, {"IEND", {}}});
        EXPECT_EQ(shownBy(fileOf(kPngSignature, chunks)), (Shown{{c.pixels, 0}})) << &c - cases;
    }
}

// A comment as every text chunk can hold it. One that is damaged counts as none.
TEST(StageForeignPng, TextsOfEveryKind) {
    const Bytes text = {'f', 0xFC, 'r'}; // Latin-1
    const std::string read = "f\xC3\xBCr";
    const Bytes inUtf8(read.begin(), read.end());
    const auto chunk = [](std::string_view start, const Bytes& rest) {
        Bytes data(start.begin(), start.end());
        data.insert(data.begin(), {'C', 'o', 'm', 'm', 'e', 'n', 't', 0});
        data.insert(data.end(), rest.begin(), rest.end());
        return data;
    };
    const std::tuple<const char*, Bytes, std::string> cases[] = {
        {"tEXt", chunk("", text), read},
        {"zTXt", chunk("\0"sv, deflated(text)), read},
        {"zTXt", chunk("\1", deflated(text)), ""}, // a method that does not exist
        {"zTXt", chunk("\0"sv, {1, 2, 3}), ""},
        {"iTXt", chunk("\0\0de\0\0"sv, inUtf8), read},
        {"iTXt", chunk("\1\0\0\0"sv, deflated(inUtf8)), read},
        {"iTXt", chunk("\0"sv, {}), ""},
        {"iTXt", chunk("\0\0d"sv, {}), ""}};
    for (const auto& [type, data, comment] : cases) {
        const Bytes file =
            fileOf(kPngSignature,
                   {{"IHDR", headerOf(1, 1, 8, 0)}, {type, data}, {"IDAT", deflated(Bytes{0, 0})}, {"IEND", {}}});
        EXPECT_EQ(readAnimation(file).animation.comment, comment) << type << " of " << data.size();
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
    const Bytes file = fileOf(kPngSignature, chunks);
    EXPECT_EQ(readAnimation(file).animation.plays, 5u);
    EXPECT_EQ(shownBy(file), (Shown{{{grey(1), grey(2)}, 10}, {{kTransparentPixel, grey(8, 100)}, 10}}));
    // Frames that no word of an animation comes before belong to a still picture.
    const Bytes still = fileOf(kPngSignature, {chunks[0], chunks[2], chunks[3], chunks[6]});
    EXPECT_EQ(readAnimation(still).format, OutputFormat::Png);
}

// Half over half: opacities join to 192 of 255, and what lies above weighs 128 / 192 of it.
TEST(StageForeignApng, HalfOpaquePixelsMix) {
    FrameCanvas canvas(3, 1, {});
    StoredFrame part{.width = 3, .height = 1};
    canvas.show(part, {3, 1, {pixelOf({0, 90, 255}, 128), pixelOf({0, 90, 255}), kTransparentPixel}});
    part.blend = Blend::Over;
    const Pixel above = pixelOf({255, 90, 0}, 128);
    EXPECT_EQ(pictureOf(canvas.show(part, {3, 1, {above, above, above}})).pixels,
              (std::vector{pixelOf({170, 90, 85}, 192), pixelOf({128, 90, 127}), above}));
}

Bytes mngOf(Chunks chunks) { // 2 x 1, 100 ticks a second
    Bytes header = {0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 100};
    header.resize(28);
    chunks.emplace(chunks.begin(), "MHDR", header);
    return fileOf(kMngSignature, chunks);
}

TEST(StageForeignMng, FramingPlacesAndSharedPalettes) {
    Chunks chunks = {{"TERM", {0}}, // shows the last frame: no repetition
                     {"PLTE", {1, 1, 1, 7, 8, 9}},
                     {"tRNS", {255, 100}}};
    // Adds chunks before a picture of one pixel of entry 1, which takes the palette of all.
    const auto add = [&](Chunks before, bool takesOpacity) {
        before.insert(before.end(), {{"IHDR", headerOf(1, 1, 1, 3)}, {"PLTE", {}}});
        if (takesOpacity)
            before.push_back({"tRNS", {}});
        before.insert(before.end(), {{"IDAT", deflated(Bytes{0, 0x80})}, {"IEND", {}}});
        chunks.insert(chunks.end(), before.begin(), before.end());
    };
    add({{"FRAM", {3, 0, 2, 0, 0, 0, 0, 0, 0, 50}}}, true); // over the background, 50 ticks from now on
    add({{"FRAM", {0, 0, 1, 0, 0, 0, 0, 0, 0, 7}}, {"DEFI", {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}}},
        false); // 7 once; 1, 0
    add({{"FRAM", {}}, {"FRAM", {0}}, {"DEFI", {0, 0}}}, false);
    chunks.push_back({"MEND", {}});
    const Bytes file = mngOf(chunks);
    const std::vector<Pixel> second = {kTransparentPixel, pixelOf({7, 8, 9})};
    EXPECT_EQ(shownBy(file), (Shown{{{pixelOf({7, 8, 9}, 100), kTransparentPixel}, 500}, {second, 70}, {second, 500}}));
    EXPECT_EQ(readAnimation(file).animation.plays, 1u);
}

// What reading says; empty when it takes the file.
std::string refusalOf(const Bytes& bytes) {
    try {
        readAnimation(bytes, {1 << 16, {}});
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), ExitCode::FileTrouble);
        return failure.what();
    }
    return {};
}

void expectRefusals(std::span<const std::pair<const char*, Bytes>> cases) {
    for (const auto& [said, bytes] : cases)
        EXPECT_NE(refusalOf(bytes).find(said), std::string::npos) << said << " / " << refusalOf(bytes);
}

TEST(StageDamage, FilesThatAreCutOffAreRefused) {
    Animation animation{12, 9, {}, 0, {}, "comment", Remembered{"MainEffect = 1\n", "A,1,2\n"}};
    for (std::uint32_t frame = 0; frame < 3; ++frame) {
        Picture picture{12, 9, std::vector<Pixel>(12 * 9)};
        for (std::uint32_t i = 0; i < 12 * 9; ++i)
            picture.pixels[i] = i % 17 == frame ? kTransparentPixel : pixelOf({std::uint8_t(i * frame), 7, 9});
        animation.frames.push_back(frameOf(picture));
    }
    for (const OutputFormat format : {OutputFormat::Gif, OutputFormat::Apng, OutputFormat::Mng}) {
        MemorySink sink;
        writeAnimation(animation, format, {}, sink);
        std::size_t taken = 0;
        for (Bytes bytes = sink.bytes(); !bytes.empty(); bytes.pop_back())
            taken += refusalOf(bytes).empty() ? 1 : 0;
        // The whole. A GIF may end without its trailer too, behind its first and second frame, and behind the blocks
        // that announce the next.
        EXPECT_EQ(taken, format == OutputFormat::Gif ? 6u : 1u) << formatName(format);
    }
}

Bytes gifOf(std::initializer_list<int> rest, int width = 2) {
    Bytes bytes = {'G', 'I', 'F', '8', '9', 'a', std::uint8_t(width), std::uint8_t(width >> 8), 1, 0, 0x80, 0, 0,
                   1,   2,   3,   4,   5,   6};
    for (const int byte : rest)
        bytes.push_back(static_cast<std::uint8_t>(byte));
    return bytes;
}

TEST(StageDamage, GifsThatLie) {
    const std::pair<const char*, Bytes> cases[] = {
        {"neither", {'G', 'I', 'F', '9', '0', 'a'}},
        {"ends too early", {'G', 'I', 'F', '8', '9', 'a', 1}},
        {"no frames", gifOf({0x3B})},
        {"no pixels", gifOf({0x2C, 0, 0, 0, 0, 0, 0, 1, 0, 0, 2, 0, 0x3B})},
        // Codes of 3 bits: clear (4), then 7, which cannot exist yet.
        {"not defined", gifOf({0x2C, 0, 0, 0, 0, 2, 0, 1, 0, 0, 2, 1, 0x3C, 0, 0x3B})},
        {"not defined", gifOf({0x2C, 0, 0, 0, 0, 2, 0, 1, 0, 0, 2, 1, 0x34, 0, 0x3B})}, // 6, the next
        {"fewer pixels", gifOf({0x2C, 0, 0, 0, 0, 255, 0, 1, 0, 0, 2, 1, 0x04, 0, 0x3B})},
        {"more pixels", gifOf({0x2C, 0, 0, 0, 0, 255, 255, 255, 255, 0, 2, 1, 0x04, 0, 0x3B})},
        {"outside the palette", gifOf({0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0, 2, 1, 0x5C, 0, 0x3B})},
        {"size that does not exist", gifOf({0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0, 12, 1, 0x5C, 0, 0x3B})},
        {"unknown kind", gifOf({0x99})}};
    expectRefusals(cases);
    // A frame that reaches beyond the screen is cut, and an index that is transparent needs no colour.
    EXPECT_EQ(refusalOf(gifOf({0x21, 0xF9, 4, 1, 0, 0, 3, 0, 0x2C, 255, 255, 9, 0, 1, 0, 1, 0, 0, 2, 1, 0x5C, 0})), "");
}

TEST(StageDamage, PngsAndMngsThatLie) {
    const auto png = [](const Chunks& chunks) { return fileOf(kPngSignature, chunks); };
    const auto animated = [&](const Chunks& chunks, std::uint8_t frames = 1) {
        Chunks all = {{"IHDR", headerOf(1, 1, 8, 0)}, {"acTL", {0, 0, 0, frames, 0, 0, 0, 0}}};
        all.insert(all.end(), chunks.begin(), chunks.end());
        return png(all);
    };
    const Bytes header = headerOf(1, 1, 8, 0);                            // grey
    const Bytes huge = {0, 0, 255, 255, 0, 0, 255, 255, 16, 6, 0, 0, 0};  // 65535 x 65535
    const Bytes beyond = {255, 255, 255, 255, 0, 0, 0, 1, 8, 0, 0, 0, 0}; // 4294967295 x 1
    const Bytes pixel = {0x78, 1, 1, 2, 0, 0xFD, 0xFF, 0, 7, 0, 9, 0, 8}; // two bytes, stored
    const Bytes frame = {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 9, 0, 0, 0, 0, 0, 1, 0, 1, 0, 0}; // at 9, 0
    const std::pair<const char*, Bytes> cases[] = {
        {"more pixels", png({{"IHDR", huge}, {"IDAT", pixel}, {"IEND", {}}})},
        {"larger than 65535", png({{"IHDR", beyond}, {"IEND", {}}})},
        {"begin with a header", png({{"IDAT", pixel}})},
        {"no pixels", png({{"IHDR", header}, {"IEND", {}}})},
        {"unknown chunk", png({{"IHDR", header}, {"ABCD", {}}})},
        {"decompressed", png({{"IHDR", header}, {"IDAT", {1, 2, 3}}, {"IEND", {}}})},
        {"outside the palette",
         png({{"IHDR", headerOf(1, 1, 8, 3)}, {"PLTE", {1, 2, 3}}, {"IDAT", pixel}, {"IEND", {}}})},
        {"unknown filter", png({{"IHDR", header}, {"IDAT", deflated(Bytes{9, 7})}, {"IEND", {}}})},
        {"fewer pixels", png({{"IHDR", header}, {"IDAT", deflated(Bytes{0})}, {"IEND", {}}})},
        {"no frames", animated({}, 0)},
        {"outside the picture", animated({{"fcTL", frame}})},
        {"wrong order", animated({{"fcTL", {9, 9, 9, 9}}})},
        {"before the frame", animated({{"fdAT", Bytes(4)}})},
        {"another number", animated({{"IDAT", pixel}, {"IEND", {}}}, 9)},
        {"no frames", mngOf({{"MEND", {}}})},
        {"feature of MNG", mngOf({{"LOOP", Bytes(5)}})},
        {"too early", mngOf({{"DEFI", Bytes(1)}})}};
    expectRefusals(cases);
    // The pixel of the first cases is sound: 7 in a grey picture.
    const Bytes still = png({{"IHDR", header}, {"IDAT", pixel}, {"IEND", {}}});
    EXPECT_EQ(shownBy(still), (Shown{{{grey(7)}, 0}}));
    // Of the numbers of a transparent colour only as many bits count as samples have.
    const Bytes oddKey = png({{"IHDR", header}, {"tRNS", {0x5A, 7}}, {"IDAT", pixel}, {"IEND", {}}});
    EXPECT_EQ(shownBy(oddKey), (Shown{{{kTransparentPixel}, 0}}));
    for (const auto& [at, said] : {std::pair{8u, "length"}, {16u, "check sum"}}) {
        Bytes damaged = still;
        damaged[at] ^= 0x7F;
        EXPECT_NE(refusalOf(damaged).find(said), std::string::npos) << said;
    }
}

} // namespace
} // namespace stage
