// Packed records: what a record says about its size, and how damaged streams end.
#include "record_bytes.h"
#include "render/packed_record.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace veldran {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kUntouched = 0xEE; // appears in no payload

// Longer than two of the reader's steps of 8192 bytes.
Bytes payload() {
    Bytes bytes(20000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * i / 7 % 200);
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
    std::vector<Bytes> refused = {
        {}, Bytes(kRecordHeaderBytes), Bytes(record.begin(), record.begin() + kRecordHeaderBytes - 1)};
    refused.push_back(record);
    refused.back()[7] ^= 0x20; // another case of the letter
    for (const Bytes& bytes : refused)
        EXPECT_TRUE(!unpackedSize(bytes) && !arrived(bytes, 100)) << bytes.size();
}

struct StreamCase {
    const char* name;
    std::function<void(Bytes& record)> damage;
    std::size_t targetSize;
    std::optional<std::size_t> arrives;
};

TEST(PackedRecord, UnpacksWhatFitsAndRefusesCorruptStreams) {
    const StreamCase cases[] = {
        {"whole", [](Bytes&) {}, 20000, 20000},
        {"less room than stream", [](Bytes&) {}, 100, 100},
        {"room for one step and a byte", [](Bytes&) {}, 8193, 8193},
        {"bytes behind the stream", [](Bytes& r) { r.resize(r.size() + 9, 1); }, 20000, 20000},
        {"packed size beyond the record", [](Bytes& r) { put32(r, 12, 0xFFFFFFFF); }, 20000, 20000},
        {"header alone", [](Bytes& r) { r.resize(kRecordHeaderBytes); }, 20000, 0},
        {"no checksum", [](Bytes& r) { r.resize(r.size() - 4); }, 20000, 20000},
        {"wrong checksum", [](Bytes& r) { r.back() ^= 1; }, 20000, std::nullopt},
        {"no zlib header", [](Bytes& r) { r[52] = 0; }, 20000, std::nullopt},
        {"preset dictionary", [](Bytes& r) { r[53] = 0xBB; }, 20000, std::nullopt}, // 0x78BB = 31 x 997, FDICT set
        {"unknown block type", [](Bytes& r) { r[54] |= 6; }, 20000, std::nullopt}};
    for (const StreamCase& c : cases) {
        Bytes record = makeRecord(payload());
        c.damage(record);
        EXPECT_EQ(arrived(record, c.targetSize), c.arrives) << c.name;
    }
}

TEST(PackedRecord, ACutStreamKeepsItsFront) {
    // Stored blocks: a block's length stands in front of it, so the bytes before the cut are known.
    const Bytes record = makeRecord(payload(), Z_NO_COMPRESSION);
    for (const std::size_t kept : {0u, 1u, 8192u, 9000u}) {
        const std::size_t overhead = kRecordHeaderBytes + 2 + 5; // record, stream and block header
        EXPECT_EQ(arrived(Bytes(record.data(), record.data() + overhead + kept), 20000), kept);
    }
}

TEST(PackedRecord, NoDamagedByteWritesOutside) {
    const Bytes record = makeRecord(payload());
    int tried = 0;
    int refused = 0;
    for (std::size_t i = kRecordHeaderBytes; i < record.size(); i += 1 + record.size() / 500) {
        Bytes damaged = record;
        damaged[i] ^= 0x41;
        Bytes target(20000);
        ++tried;
        refused += unpackRecord(damaged, target) ? 0 : 1;
    }
    EXPECT_GT(refused, tried * 9 / 10); // the stream's checksum finds what its codes do not
}

} // namespace
} // namespace veldran
