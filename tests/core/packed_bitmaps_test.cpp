// Packed bitmaps and their three readers: of the plugin's own (viewPackedBitmap), of those that hosts hand over
// (ForeignBitmap) and of what the bundled host takes from the plugin (unpackBitmap); and the records in which bitmaps
// of the artwork are packed. Hostile ones included.
#include "base/failure.h"
#include "bitmap_bytes.h"
#include "document/packed_bitmap.h"
#include "record_bytes.h"
#include "render/foreign_bitmap.h"
#include "render/packed_record.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace veldran {
namespace {

using PixelRows = std::vector<ForeignBitmap::Pixel>;

PixelRows readAll(const Bytes& block) {
    const std::optional<ForeignBitmap> bitmap = ForeignBitmap::open(block);
    PixelRows pixels;
    for (int y = 0; bitmap && y < bitmap->height(); ++y) {
        PixelRows row(static_cast<std::size_t>(bitmap->width()));
        bitmap->readRow(y, 0, row);
        pixels.insert(pixels.end(), row.begin(), row.end());
    }
    return pixels;
}

stage::Frame unpacked(const Bytes& block, stage::OpacityByte opacity = stage::OpacityByte::Unused) {
    return stage::unpackBitmap(std::as_bytes(std::span(block)), opacity);
}

// Which of the three readers take it: o for the plugin's own, f for foreign ones, h for the bundled host's.
std::string takers(const Bytes& block) {
    std::string all;
    if (viewPackedBitmap(std::span(block)))
        all += 'o';
    if (!readAll(block).empty())
        all += 'f';
    try {
        unpacked(block);
        all += 'h';
    } catch (const stage::Failure&) {
    }
    return all;
}

TEST(PackedBitmaps, SizesHeadersAndRows) {
    EXPECT_EQ(packedBitmapBytes(47, 33, 24), 4792u);
    EXPECT_EQ(packedBitmapBytes(65535, 65535, 32), 17179344940u);
    for (const auto& [width, height, bits] : {std::array{65536, 1, 24}, {0, 1, 24}, {1, INT32_MIN, 24}, {1, 1, 4}})
        EXPECT_FALSE(packedBitmapBytes(width, height, bits)) << width << "x" << height << "x" << bits;
    // The header's bytes as any other program reads them.
    Bytes header = packedBitmap(47, 33, 24);
    header.resize(22);
    EXPECT_EQ(header, (Bytes{40, 0, 0, 0, 47, 0, 0, 0, 33, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0, 0, 0x90, 0x12}));
    for (const int bits : {1, 8, 24, 32}) { // rows stand bottom-up behind the colour table
        Bytes block = packedBitmap(3, 2, bits);
        const ImageView view = viewPackedBitmap(std::span(block)).value();
        EXPECT_TRUE(view.width == 3 && view.height == 2 && view.bits == bits) << bits;
        EXPECT_EQ(view.row(0) + (bits <= 8 ? 4 : 12), block.data() + block.size()) << bits;
        EXPECT_EQ(view.row(1), block.data() + (bits == 1 ? 48 : bits == 8 ? 1064 : 40)) << bits;
        EXPECT_EQ(view.colourTable, bits <= 8 ? block.data() + 40 : nullptr) << bits;
    }
}

TEST(PackedBitmaps, HeadersThatLieAreRefused) {
    const struct {
        const char* name;
        BitmapLayout layout;
        std::size_t rest; // bytes
        const char* takers;
    } cases[] = {{"as written", {24, 5, 2}, 32, "ofh"},
                 {"full colour table", {8, 5, 2, 0, 256}, 1040, "ofh"},
                 {"short colour table", {8, 5, 2, 0, 16}, 1040, "f"},
                 {"colour table before colours", {24, 5, 2, 0, 16}, 96, "f"},
                 {"top-down", {24, 5, -2}, 32, "f"},
                 {"16 bits", {16, 5, 2}, 24, "f"},
                 {"one bit", {1, 5, 2}, 16, "of"},
                 {"longer header", {24, 5, 2, 0, 0, 108}, 100, "f"},
                 {"older header", {24, 5, 2, 0, 0, 39}, 32, ""},
                 {"header beyond the block", {24, 1, 1, 0, 0, 4200}, 4096, ""},
                 {"a byte short", {24, 5, 2}, 31, ""},
                 {"no room for colours", {8, 5, 2}, 1039, ""},
                 {"width whose stride wraps", {32, 0x40000000, 2}, 4096, ""},
                 {"sides whose product wraps", {24, INT32_MAX, INT32_MAX}, 4096, ""},
                 {"height without its opposite", {32, 1, INT32_MIN}, 4096, ""},
                 {"too wide", {32, 65536, 1}, 4 * 65536, ""},
                 {"empty", {24, 0, 2}, 32, ""},
                 {"two planes", {24, 5, 2, 0, 0, 40, 2}, 32, ""},
                 {"two bits", {2}, 64, ""},
                 {"run lengths", {8, 5, 2, 1}, 1040, ""},
                 {"unknown compression", {16, 1, 1, 4}, 64, ""},
                 {"more entries than numbers", {1, 1, 1, 0, 3}, 64, ""},
                 {"a colour table of all bytes", {24, 1, 1, 0, ~0u}, 64, ""},
                 {"masks in pieces", {32, 1, 1, 3}, 64, ""}};
    for (const auto& c : cases)
        EXPECT_EQ(takers(bitmapOf(c.layout, Bytes(c.rest, 7))), c.takers) << c.name;
    for (std::size_t size = 0; size < 40; ++size)
        EXPECT_EQ(takers(Bytes(size, 40)), "") << size;
}

TEST(ForeignBitmap, EveryDepthAndOrderIsRead) {
    const ForeignBitmap::Pixel first{10, 20, 30, 255}, second{1, 2, 3, 255};
    const Bytes colours{10, 20, 30, 0, 1, 2, 3, 0};
    const Bytes wideGreen{0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0x1F, 0, 0, 0}; // masks of red, green and blue
    const Bytes noBlue{0, 0xF8, 0, 0, 0xE0, 7, 0, 0, 0, 0, 0, 0};
    const Bytes swapped{0xFF, 0, 0, 0, 0, 0xFF, 0, 0, 0, 0, 0xFF, 0, 0, 0, 0, 0x80}; // opacity of one bit
    const struct {
        BitmapLayout layout;
        Bytes head, rows;
        PixelRows pixels;
    } cases[] = {{{1, 2, 1}, colours, {0x80, 0, 0, 0}, {second, first}},
                 {{4, 2, 1, 0, 2}, colours, {0x10, 0, 0, 0}, {second, first}},
                 {{8, 2, 1, 0, 2}, colours, {1, 0, 0, 0}, {second, first}},
                 {{8, 1, 1, 0, 2}, colours, {200, 0, 0, 0}, {{0, 0, 0, 255}}}, // beyond the table
                 {{24, 1, 2}, {}, {1, 2, 3, 0, 10, 20, 30, 0}, {first, second}},
                 {{24, 2, -1}, {}, {1, 2, 3, 10, 20, 30, 0, 0}, {second, first}},
                 {{24, 1, -2}, {}, {1, 2, 3, 0, 10, 20, 30, 0}, {second, first}},
                 {{32, 2, 1}, {}, {1, 2, 3, 0, 10, 20, 30, 0}, {second, first}}, // no opacity anywhere: opaque
                 {{32, 2, 1}, {}, {1, 2, 3, 0, 10, 20, 30, 255}, {{1, 2, 3, 0}, first}},
                 {{16}, {}, {0x1F, 0x7C, 0, 0}, {{255, 0, 255, 255}}},
                 {{16, 1, 1, 3}, wideGreen, {0xE0, 7, 0, 0}, {{0, 255, 0, 255}}},
                 {{16, 1, 1, 3}, noBlue, {0xFF, 0xFF, 0, 0}, {{0, 255, 255, 255}}},
                 {{32, 1, 1, 6}, swapped, {1, 2, 3, 0x80}, {{3, 2, 1, 255}}},
                 {{32, 1, 1, 3, 0, 56}, swapped, {1, 2, 3, 0x7F}, {{3, 2, 1, 0}}}};
    for (const auto& c : cases) {
        Bytes rest = c.head;
        rest.insert(rest.end(), c.rows.begin(), c.rows.end());
        EXPECT_EQ(readAll(bitmapOf(c.layout, rest)), c.pixels) << c.layout.bits << " bits, case " << &c - cases;
    }
}

TEST(ForeignBitmap, TruncatedBlocksAreRefused) {
    const struct {
        BitmapLayout layout;
        std::size_t needed; // bytes behind the header of 40: rest of the header or masks, colours, rows
    } cases[] = {{{1, 9, 3}, 8 + 12},         {{4, 3, -2}, 64 + 8}, {{8, 5, 2, 0, 2}, 8 + 16},
                 {{16, 3, 2, 3}, 12 + 2 * 8}, {{24, 3, 2}, 24},     {{32, 2, 2, 3, 0, 108}, 68 + 16}};
    for (const auto& [layout, needed] : cases) {
        Bytes rest = {0xF, 0, 0, 0, 0xF0, 0, 0, 0, 0, 0xF, 0, 0, 0, 0, 0, 0};
        rest.resize(needed);
        EXPECT_FALSE(readAll(bitmapOf(layout, rest)).empty()) << layout.bits;
        for (; !rest.empty(); rest.pop_back())
            EXPECT_TRUE(readAll(bitmapOf(layout, {rest.begin(), rest.end() - 1})).empty()) << rest.size();
    }
}

// fuzz/foreign_bitmap holds against the other readers that rows turn and colours swap; they know no opacity.
TEST(StageBitmap, OpacityIsTakenWhenItIsUsed) {
    const Bytes deep = bitmapOf({32, 1, 2}, {0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(unpacked(deep, stage::OpacityByte::Used).pixels, (Bytes{6, 5, 4, 7, 2, 1, 0, 3}));
    EXPECT_EQ(unpacked(deep).pixels, (Bytes{6, 5, 4, 2, 1, 0}));
}

constexpr std::uint8_t kUntouched = 0xEE; // appears in no payload

// Longer than two of the reader's steps of 8192 bytes.
Bytes payload() {
    Bytes bytes;
    while (bytes.size() < 20000)
        bytes.push_back(static_cast<std::uint8_t>(bytes.size() * bytes.size() / 7 % 200));
    return bytes;
}

// The bytes that arrived; nothing when the record was refused. What did not arrive must be as it was, and what
// arrived must be the front of the payload.
std::optional<std::size_t> arrived(const Bytes& record, std::size_t targetSize) {
    Bytes target(targetSize, kUntouched);
    if (!unpackRecord(record, target))
        return std::nullopt;
    const Bytes whole = payload();
    const auto end = std::ranges::find(target, kUntouched);
    EXPECT_TRUE(std::equal(target.begin(), end, whole.begin()));
    EXPECT_TRUE(std::all_of(end, target.end(), [](std::uint8_t byte) { return byte == kUntouched; }));
    return static_cast<std::size_t>(end - target.begin());
}

TEST(PackedRecord, StatesItsSizeAndRefusesOtherBytes) {
    const Bytes record = makeRecord(payload());
    Bytes header(record.begin(), record.begin() + kRecordHeaderBytes);
    std::fill(header.begin() + 16, header.end(), std::uint8_t{0x5A}); // version, reserved bytes
    EXPECT_EQ(unpackedSize(header), 20000u);
    put32(header, kRecordSizeOffset, 0xFFFFFFFF);
    EXPECT_EQ(unpackedSize(header), 0xFFFFFFFFu);
    Bytes otherCase = record, cut = record;
    otherCase[7] ^= 0x20;
    cut.resize(kRecordHeaderBytes - 1);
    for (const Bytes& bytes : {Bytes(), Bytes(kRecordHeaderBytes), cut, otherCase})
        EXPECT_TRUE(!unpackedSize(bytes) && !arrived(bytes, 100)) << bytes.size();
}

TEST(PackedRecord, UnpacksWhatFitsAndRefusesCorruptStreams) {
    const struct {
        std::function<void(Bytes& record)> damage;
        std::size_t targetSize;
        std::optional<std::size_t> arrives;
    } cases[] = {{[](Bytes&) {}, 20000, 20000},
                 {[](Bytes&) {}, 20009, 20000},
                 {[](Bytes&) {}, 100, 100},
                 {[](Bytes&) {}, 8193, 8193}, // a step and a byte
                 {[](Bytes& r) { r.resize(r.size() + 9, 1); }, 20000, 20000},
                 {[](Bytes& r) { put32(r, kRecordPackedSizeOffset, 0xFFFFFFFF); }, 20000, 20000},
                 {[](Bytes& r) { r.resize(kRecordHeaderBytes); }, 20000, 0},
                 {[](Bytes& r) { r.resize(r.size() - 4); }, 20000, 20000}, // without its checksum
                 {[](Bytes& r) { r.back() ^= 1; }, 20000, {}},
                 {[](Bytes& r) { r[52] = 0; }, 20000, {}},    // no zlib header
                 {[](Bytes& r) { r[53] = 0xBB; }, 20000, {}}, // preset dictionary: 0x78BB = 31 x 997, FDICT set
                 {[](Bytes& r) { r[54] |= 6; }, 20000, {}}};  // unknown block type
    for (const auto& c : cases) {
        Bytes record = makeRecord(payload());
        c.damage(record);
        EXPECT_EQ(arrived(record, c.targetSize), c.arrives) << &c - cases;
    }
    // In stored blocks a block's length stands in front of it, so the bytes before a cut are known.
    const Bytes stored = makeRecord(payload(), Z_NO_COMPRESSION);
    for (const std::size_t kept : {0u, 1u, 8192u, 9000u}) {
        const std::size_t overhead = kRecordHeaderBytes + 2 + 5; // record, stream and block header
        EXPECT_EQ(arrived(Bytes(stored.data(), stored.data() + overhead + kept), 20000), kept);
    }
}

} // namespace
} // namespace veldran
