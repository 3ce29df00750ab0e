// Record layout, little-endian: 8 bytes magic, u32 unpacked size, u32 packed size, u32 version, 32 bytes reserved, then
// the stream.
#include "render/packed_record.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <zlib.h>

namespace veldran {
namespace {

constexpr char kMagic[] = "CPX_HEAD";
constexpr std::size_t kMagicBytes = 8;
constexpr std::size_t kUnpackedSizeOffset = 8;
constexpr std::size_t kPackedSizeOffset = 12;
constexpr std::size_t kHeaderBytes = 52;
constexpr std::size_t kScratchBytes = 8192;

std::uint32_t readU32(std::span<const std::uint8_t> bytes, std::size_t offset) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

// The stream behind the header; a record that is cut short has a shorter one.
std::span<const std::uint8_t> streamOf(std::span<const std::uint8_t> record) {
    const std::size_t stated = readU32(record, kPackedSizeOffset);
    return record.subspan(kHeaderBytes, std::min(stated, record.size() - kHeaderBytes));
}

bool inflateInto(z_stream& zip, std::span<const std::uint8_t> packed, std::span<std::uint8_t> target) {
    std::array<std::uint8_t, kScratchBytes> scratch;
    std::size_t produced = 0;
    zip.next_in = const_cast<Bytef*>(packed.data());
    zip.avail_in = static_cast<uInt>(packed.size());
    for (;;) {
        zip.next_out = scratch.data();
        zip.avail_out = static_cast<uInt>(scratch.size());
        const int status = inflate(&zip, Z_PARTIAL_FLUSH);
        const std::size_t count = std::min(scratch.size() - zip.avail_out, target.size() - produced);
        std::copy_n(scratch.data(), count, target.data() + produced);
        produced += count;
        if (status == Z_STREAM_END)
            return true;
        // With all input taken and room left in the scratch buffer, there is nothing more to come.
        if (zip.avail_in == 0 && zip.avail_out != 0)
            return status == Z_OK || status == Z_BUF_ERROR;
        if (status != Z_OK)
            return false;
    }
}

} // namespace

std::optional<std::size_t> unpackedSize(std::span<const std::uint8_t> record) {
    if (record.size() < kHeaderBytes || std::memcmp(record.data(), kMagic, kMagicBytes) != 0)
        return std::nullopt;
    return readU32(record, kUnpackedSizeOffset);
}

bool unpackRecord(std::span<const std::uint8_t> record, std::span<std::uint8_t> target) {
    if (!unpackedSize(record))
        return false;
    z_stream zip{};
    if (inflateInit(&zip) != Z_OK)
        return false;
    const bool done = inflateInto(zip, streamOf(record), target);
    inflateEnd(&zip);
    return done;
}

} // namespace veldran
