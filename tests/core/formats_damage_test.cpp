// Files that were cut off, changed or made to harm: each is read as something or refused with a message, and nothing
// else happens. The sanitizers watch.
#include "core/animation_reader.h"
#include "core/animation_writer.h"
#include "core/failure.h"
#include "core/picture.h"
#include "core/png_coding.h"
#include "mended_chunks.h"

#include <gtest/gtest.h>

#include <random>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes smallFile(OutputFormat format) {
    Animation animation;
    animation.width = 12;
    animation.height = 9;
    animation.comment = "comment";
    animation.made = Remembered{"MainEffect = 1\n", "A,1,2\n"};
    for (std::uint32_t frame = 0; frame < 3; ++frame) {
        Picture picture{12, 9, {}};
        for (std::uint32_t i = 0; i < 12 * 9; ++i)
            picture.pixels.push_back(i % 17 == frame ? kTransparentPixel : pixelOf({std::uint8_t(i * frame), 7, 9}));
        animation.frames.push_back(frameOf(picture));
        animation.frames.back().delay = 50;
    }
    MemorySink sink;
    writeAnimation(animation, format, {}, sink);
    return sink.bytes();
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

TEST(StageDamage, FilesThatAreCutOffAreRefused) {
    for (const OutputFormat format : {OutputFormat::Gif, OutputFormat::Apng, OutputFormat::Mng}) {
        const Bytes whole = smallFile(format);
        ASSERT_EQ(refusalOf(whole), "");
        const std::size_t trailer = format == OutputFormat::Gif ? 1 : 0; // of a GIF it may be missing
        std::size_t taken = 0;
        for (std::size_t length = 0; length < whole.size() - trailer; ++length)
            taken += refusalOf({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)}).empty() ? 1 : 0;
        // A GIF may end behind its first and second frame, and behind the blocks that announce the next.
        EXPECT_EQ(taken, format == OutputFormat::Gif ? 4u : 0u) << formatName(format);
    }
}

TEST(StageDamage, ChangedBytesNeverDoHarm) {
    std::mt19937 random(11);
    for (const OutputFormat format : {OutputFormat::Gif, OutputFormat::Apng, OutputFormat::Mng}) {
        const Bytes whole = smallFile(format);
        int refused = 0;
        for (int trial = 0; trial < 1500; ++trial) {
            Bytes changed = whole;
            for (int i = 0; i < 1 + trial % 3; ++i)
                changed[random() % changed.size()] = static_cast<std::uint8_t>(random());
            if (format != OutputFormat::Gif && trial % 4 != 0)
                changed = mendedChunks(changed); // so that changes reach what lies behind check sums
            refused += refusalOf(changed).empty() ? 0 : 1;
        }
        EXPECT_GT(refused, 150) << formatName(format);
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
    const struct {
        const char* said;
        Bytes bytes;
    } cases[] = {
        {"neither", {'G', 'I', 'F', '9', '0', 'a'}},
        {"ends too early", {'G', 'I', 'F', '8', '9', 'a', 1}},
        {"no frames", gifOf({0x3B})},
        {"no pixels", gifOf({0x2C, 0, 0, 0, 0, 0, 0, 1, 0, 0, 2, 0, 0x3B})},
        // Codes of 3 bits: clear (4), then 7, which cannot exist yet.
        {"not defined", gifOf({0x2C, 0, 0, 0, 0, 2, 0, 1, 0, 0, 2, 1, 0x3C, 0, 0x3B})},
        {"fewer pixels", gifOf({0x2C, 0, 0, 0, 0, 255, 0, 1, 0, 0, 2, 1, 0x04, 0, 0x3B})},
        {"more pixels", gifOf({0x2C, 0, 0, 0, 0, 255, 255, 255, 255, 0, 2, 1, 0x04, 0, 0x3B})},
        {"outside the palette", gifOf({0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0, 2, 1, 0x5C, 0, 0x3B})},
        {"size that does not exist", gifOf({0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0, 12, 1, 0x5C, 0, 0x3B})},
        {"unknown kind", gifOf({0x99})},
    };
    for (const auto& c : cases)
        EXPECT_NE(refusalOf(c.bytes).find(c.said), std::string::npos) << c.said << " / " << refusalOf(c.bytes);
    // A frame that reaches beyond the screen is cut, and an index that is transparent needs no colour.
    EXPECT_EQ(refusalOf(gifOf({0x21, 0xF9, 4, 1, 0, 0, 3, 0, 0x2C, 255, 255, 9, 0, 1, 0, 1, 0, 0, 2, 1, 0x5C, 0})), "");
}

Bytes pngOf(std::initializer_list<std::pair<const char*, Bytes>> chunks, std::span<const std::uint8_t> signature) {
    Bytes bytes(signature.begin(), signature.end());
    for (const auto& [type, data] : chunks)
        putChunk(bytes, type, data);
    return bytes;
}

TEST(StageDamage, PngsAndMngsThatLie) {
    const Bytes header = {0, 0, 0, 1, 0, 0, 0, 1, 8, 0, 0, 0, 0};         // 1 x 1, grey
    const Bytes huge = {0, 0, 255, 255, 0, 0, 255, 255, 16, 6, 0, 0, 0};  // 65535 x 65535
    const Bytes beyond = {255, 255, 255, 255, 0, 0, 0, 1, 8, 0, 0, 0, 0}; // 4294967295 x 1
    const Bytes pixel = {0x78, 1, 1, 2, 0, 0xFD, 0xFF, 0, 7, 0, 9, 0, 8}; // two bytes, stored
    const Bytes frame = {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 9, 0, 0, 0, 0, 0, 1, 0, 1, 0, 0}; // at 9, 0
    const Bytes mhdr = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    const struct {
        const char* said;
        Bytes bytes;
    } cases[] = {
        {"more pixels", pngOf({{"IHDR", huge}, {"IDAT", pixel}, {"IEND", {}}}, kPngSignature)},
        {"larger than 65535", pngOf({{"IHDR", beyond}, {"IEND", {}}}, kPngSignature)},
        {"begin with a header", pngOf({{"IDAT", pixel}}, kPngSignature)},
        {"no pixels", pngOf({{"IHDR", header}, {"IEND", {}}}, kPngSignature)},
        {"unknown chunk", pngOf({{"IHDR", header}, {"ABCD", {}}}, kPngSignature)},
        {"decompressed", pngOf({{"IHDR", header}, {"IDAT", {1, 2, 3}}, {"IEND", {}}}, kPngSignature)},
        {"no frames", pngOf({{"IHDR", header}, {"acTL", Bytes(8)}}, kPngSignature)},
        {"outside the picture",
         pngOf({{"IHDR", header}, {"acTL", {0, 0, 0, 1, 0, 0, 0, 0}}, {"fcTL", frame}}, kPngSignature)},
        {"wrong order",
         pngOf({{"IHDR", header}, {"acTL", {0, 0, 0, 1, 0, 0, 0, 0}}, {"fcTL", {9, 9, 9, 9}}}, kPngSignature)},
        {"before the frame",
         pngOf({{"IHDR", header}, {"acTL", {0, 0, 0, 1, 0, 0, 0, 0}}, {"fdAT", Bytes(4)}}, kPngSignature)},
        {"another number",
         pngOf({{"IHDR", header}, {"acTL", {0, 0, 0, 9, 0, 0, 0, 0}}, {"IDAT", pixel}, {"IEND", {}}}, kPngSignature)},
        {"no frames", pngOf({{"MHDR", mhdr}, {"MEND", {}}}, kMngSignature)},
        {"feature of MNG", pngOf({{"MHDR", mhdr}, {"LOOP", Bytes(5)}}, kMngSignature)},
        {"too early", pngOf({{"MHDR", mhdr}, {"DEFI", Bytes(1)}}, kMngSignature)},
    };
    for (const auto& c : cases)
        EXPECT_NE(refusalOf(c.bytes).find(c.said), std::string::npos) << c.said << " / " << refusalOf(c.bytes);
    // The pixel of the first cases is sound: 7 in a grey picture.
    const Bytes still = pngOf({{"IHDR", header}, {"IDAT", pixel}, {"IEND", {}}}, kPngSignature);
    EXPECT_EQ(pictureOf(readAnimation(still).animation.frames[0]).pixels[0], pixelOf({7, 7, 7}));
    // Of the numbers of a transparent colour only as many bits count as samples have.
    const Bytes oddKey = pngOf({{"IHDR", header}, {"tRNS", {0x5A, 7}}, {"IDAT", pixel}, {"IEND", {}}}, kPngSignature);
    EXPECT_EQ(pictureOf(readAnimation(oddKey).animation.frames[0]).pixels[0], kTransparentPixel);
    Bytes wrongSum = still;
    wrongSum[8 + 8] ^= 1;
    EXPECT_NE(refusalOf(wrongSum).find("check sum"), std::string::npos);
    Bytes wrongLength = still;
    wrongLength[8] = 0x7F;
    EXPECT_NE(refusalOf(wrongLength).find("length"), std::string::npos);
}

} // namespace
} // namespace stage
