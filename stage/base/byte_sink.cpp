// The sink in memory; see the header.
#include "base/byte_sink.h"

#include <algorithm>
#include <cassert>

namespace stage {

void MemorySink::write(std::span<const std::uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

void MemorySink::rewrite(std::uint64_t position, std::span<const std::uint8_t> bytes) {
    assert(position + bytes.size() <= bytes_.size());
    std::ranges::copy(bytes, bytes_.begin() + static_cast<std::ptrdiff_t>(position));
}

void MemorySink::stepBack(std::uint64_t count) {
    assert(count <= bytes_.size());
    bytes_.resize(bytes_.size() - count);
}

} // namespace stage
