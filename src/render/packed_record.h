// The compressed records in which artwork lies in the plugin file. Core: knows no windows and no resources.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace veldran {

// The size in bytes of the bitmap in a record, as its header states it; nothing when the record does not begin with
// "CPX_HEAD" or is shorter than its header.
std::optional<std::size_t> unpackedSize(std::span<const std::uint8_t> record);

// Inflates the record's stream (RFC 1950) into `target`. A stream that holds more than the target has room for is cut
// there; one that ends early leaves the rest as it is. False when the stream is corrupt or memory runs out.
bool unpackRecord(std::span<const std::uint8_t> record, std::span<std::uint8_t> target);

} // namespace veldran
