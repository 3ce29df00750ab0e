// The variable-width LZW coding of GIF89a, without its division into blocks.
// Never looks at what the indices mean.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace stage {

struct LzwPixels {
    std::span<const std::uint8_t> indices;
    // Where this is not 0 the pixel may as well be `transparent`, whichever makes the code shorter. Empty: nowhere.
    std::span<const std::uint8_t> isFree{};
    std::uint8_t transparent = 0;
};

// `minimumCodeSize` is 2 to 8; every index is below 2^minimumCodeSize. The result begins with a clear code and ends
// with the end code, padded to a whole byte with zero bits; it holds these two codes even without indices.
std::vector<std::uint8_t> compressLzw(const LzwPixels& pixels, unsigned minimumCodeSize);

// The first `count` indices of a stream of `minimumCodeSize` 1 to 8; all are below 2^minimumCodeSize. Fewer when the
// stream ends or breaks off before that; nothing when it holds a code that was not defined yet.
std::optional<std::vector<std::uint8_t>> expandLzw(std::span<const std::uint8_t> bytes, unsigned minimumCodeSize,
                                                   std::size_t count);

} // namespace stage
