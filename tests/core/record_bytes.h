// Packed records made with zlib's own compressor, for tests of what unpacks them.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace veldran {

inline constexpr std::size_t kRecordHeaderBytes = 52;
inline constexpr std::size_t kRecordSizeOffset = 8;
inline constexpr std::size_t kRecordPackedSizeOffset = 12;

inline void put32(std::span<std::uint8_t> bytes, std::size_t offset, std::size_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(value >> 8 * i);
}

inline std::vector<std::uint8_t> makeRecord(std::span<const std::uint8_t> unpacked, int level = Z_BEST_COMPRESSION) {
    uLongf packedSize = compressBound(static_cast<uLong>(unpacked.size()));
    std::vector<std::uint8_t> record(kRecordHeaderBytes + packedSize);
    compress2(record.data() + kRecordHeaderBytes, &packedSize, unpacked.data(), static_cast<uLong>(unpacked.size()),
              level);
    record.resize(kRecordHeaderBytes + packedSize);
    std::memcpy(record.data(), "CPX_HEAD", 8);
    put32(record, kRecordSizeOffset, unpacked.size());
    put32(record, kRecordPackedSizeOffset, packedSize);
    return record;
}

} // namespace veldran
