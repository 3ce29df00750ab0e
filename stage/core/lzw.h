// The variable-width LZW compression of GIF89a, without its division into blocks.
// Never looks at what the indices mean.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace stage {

// `minimumCodeSize` is 2 to 8; every index is below 2^minimumCodeSize. The result begins with a clear code and ends
// with the end code, padded to a whole byte with zero bits; it holds these two codes even without indices.
std::vector<std::uint8_t> compressLzw(std::span<const std::uint8_t> indices, unsigned minimumCodeSize);

} // namespace stage
