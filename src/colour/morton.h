// Colours in Morton order: the bits of red, green and blue interleaved, highest first. A cube of colours whose sides
// are a power of two stands together there: colours that are alike share cache lines, and `index >> 3 * bits` numbers
// the cubes with sides of 2^bits levels. Core: knows no windows.
#pragma once

#include "render/colour.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace veldran {

inline constexpr std::size_t kMortonColours = std::size_t{1} << 24;

namespace morton {

// A byte with two free bits between its bits: bit n moves to bit 3n.
constexpr std::array<std::uint32_t, 256> makeSpread() {
    std::array<std::uint32_t, 256> spread{};
    for (std::uint32_t value = 0; value < 256; ++value)
        for (std::uint32_t bit = 0; bit < 8; ++bit)
            spread[value] |= (value >> bit & 1) << 3 * bit;
    return spread;
}
inline constexpr std::array<std::uint32_t, 256> kSpread = makeSpread();

// The other way: every third bit, from the lowest on.
constexpr int gather(std::uint32_t index) {
    int value = 0;
    for (int bit = 0; bit < 8; ++bit)
        value |= static_cast<int>(index >> 3 * bit & 1) << bit;
    return value;
}

} // namespace morton

// The index, 0 to 2^24 - 1, of a colour whose channels are 0 to 255.
constexpr std::uint32_t mortonIndex(unsigned red, unsigned green, unsigned blue) {
    return morton::kSpread[red] << 2 | morton::kSpread[green] << 1 | morton::kSpread[blue];
}

constexpr std::uint32_t mortonIndex(Colour colour) {
    return mortonIndex(colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF);
}

// Red, green and blue of an index.
constexpr std::array<int, 3> mortonChannels(std::uint32_t index) {
    return {morton::gather(index >> 2), morton::gather(index >> 1), morton::gather(index)};
}

} // namespace veldran
