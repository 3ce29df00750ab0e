// The PNG files that the host writes, taken apart with zlib, and the packed bitmaps they are
// made from, hostile ones included.
#include "core/animation_recorder.h"
#include "core/failure.h"
#include "core/packed_bitmap.h"
#include "core/png_writer.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <bit>
#include <cstring>
#include <map>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::uint32_t bigEndian(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(bytes[0] << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3]);
}

std::map<std::string, Bytes> chunksOf(const Bytes& png, std::string& order) {
    std::map<std::string, Bytes> chunks;
    EXPECT_EQ(std::memcmp(png.data(), "\x89PNG\r\n\x1A\n", 8), 0);
    for (std::size_t at = 8; at + 12 <= png.size();) {
        const std::size_t length = bigEndian(&png[at]);
        const std::string type(&png[at + 4], &png[at + 8]);
        EXPECT_EQ(crc32(0, &png[at + 4], static_cast<uInt>(length + 4)), bigEndian(&png[at + 8 + length])) << type;
        chunks[type] = Bytes(&png[at + 8], &png[at + 8] + length);
        order += type + " ";
        at += length + 12;
    }
    return chunks;
}

Bytes unfilteredRows(const Bytes& packed, std::size_t rowBytes, std::size_t height) {
    Bytes rows((rowBytes + 1) * height);
    uLongf size = static_cast<uLongf>(rows.size());
    EXPECT_EQ(uncompress(rows.data(), &size, packed.data(), static_cast<uLong>(packed.size())), Z_OK);
    EXPECT_EQ(size, rows.size());
    Bytes pixels;
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t filter = rows[y * (rowBytes + 1)];
        EXPECT_TRUE(filter == 0 || filter == 2);
        for (std::size_t x = 0; x < rowBytes; ++x) {
            const int above = filter == 2 && y > 0 ? pixels[pixels.size() - rowBytes] : 0;
            pixels.push_back(static_cast<std::uint8_t>(rows[y * (rowBytes + 1) + 1 + x] + above));
        }
    }
    return pixels;
}

Frame patternFrame(std::uint32_t width, std::uint32_t height, PixelFormat format) {
    Frame frame;
    frame.width = width;
    frame.height = height;
    frame.format = format;
    for (std::size_t i = 0; i < frame.rowBytes() * height; ++i)
        frame.pixels.push_back(static_cast<std::uint8_t>(i * 31 + i / 7));
    frame.palette[0] = {1, 2, 3};
    frame.palette[255] = {250, 251, 252};
    return frame;
}

TEST(StagePng, PixelsComeBack) {
    const struct {
        std::uint8_t width, height;
        PixelFormat format;
        std::optional<std::uint8_t> transparent;
        std::uint8_t colourType;
        const char* order;
    } cases[] = {{1, 1, PixelFormat::Indexed, {}, 3, "IHDR PLTE IDAT IEND "},
                 {47, 33, PixelFormat::Indexed, 5, 3, "IHDR PLTE tRNS IDAT IEND "},
                 {47, 33, PixelFormat::Rgb, {}, 2, "IHDR IDAT IEND "},
                 {33, 47, PixelFormat::Rgba, {}, 6, "IHDR IDAT IEND "}};
    for (const auto& c : cases) {
        Frame frame = patternFrame(c.width, c.height, c.format);
        frame.transparentIndex = c.transparent;
        std::string order;
        auto chunks = chunksOf(encodePng(frame), order);
        EXPECT_EQ(order, c.order);
        // Width, height (below 256), bits a channel, colour type, and three methods that have no other value than 0.
        EXPECT_EQ(chunks["IHDR"], (Bytes{0, 0, 0, c.width, 0, 0, 0, c.height, 8, c.colourType, 0, 0, 0}));
        EXPECT_EQ(unfilteredRows(chunks["IDAT"], frame.rowBytes(), c.height), frame.pixels);
        if (c.format == PixelFormat::Indexed) {
            const Bytes& palette = chunks["PLTE"];
            EXPECT_EQ(palette[1], 2);
            EXPECT_EQ(Bytes(palette.end() - 3, palette.end()), (Bytes{250, 251, 252}));
        }
        EXPECT_EQ(chunks["tRNS"], c.transparent ? (Bytes{255, 255, 255, 255, 255, 0}) : Bytes{});
    }
}

TEST(StagePng, NumberedFilesInTheFoldersAskedFor) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "stage-png-files";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    AnimationRecorder recorder({OutputFormat::Png, folder / "a.b.png", folder / "new" / "frames"});
    recorder.begin({4, 3, 24, {}, 2});
    recorder.addFrame(patternFrame(4, 3, PixelFormat::Rgb));
    recorder.addFrame(patternFrame(4, 3, PixelFormat::Rgba));
    const Recording recording = recorder.finish();
    EXPECT_EQ(recording.frames, 2u);
    EXPECT_EQ(recording.bytes, std::filesystem::file_size(folder / "a.b-0000.png") +
                                   std::filesystem::file_size(folder / "a.b-0001.png"));
    EXPECT_EQ(readFile(folder / "new" / "frames" / "frame-0001.png"), readFile(folder / "a.b-0001.png"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 3); // no unfinished file stays
    std::filesystem::remove_all(folder);
}

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
    const struct {
        const char* name;
        std::vector<std::byte> block;
    } cases[] = {{"nothing", {}},
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
