// Compression into a zlib stream (RFC 1950 and 1951) that spends time for fewer bytes than zlib's own compressor.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace stage {

// Any zlib can inflate the result. It is never more than 6 bytes, and 5 for each 65535 begun, longer than `bytes`.
// Tries of the order of a microsecond a byte.
std::vector<std::uint8_t> deflated(std::span<const std::uint8_t> bytes);

} // namespace stage
