// Palettes: 256 entries of red, green, blue; the built-in choices. Core: knows no windows.
#pragma once

#include "render/colour.h"

#include <array>
#include <cstdint>

namespace veldran {

struct PaletteEntry {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
    bool operator==(const PaletteEntry&) const = default;
};
static_assert(sizeof(PaletteEntry) == 3); // the host's records hold palettes as bytes

using Palette = std::array<PaletteEntry, 256>; // entries beyond the colours in use are zero

constexpr PaletteEntry paletteEntry(Colour colour) {
    return {static_cast<std::uint8_t>(redOf(colour)), static_cast<std::uint8_t>(greenOf(colour)),
            static_cast<std::uint8_t>(blueOf(colour))};
}

// In RGB; 0 to 3 x 255^2.
constexpr int squaredDistance(const PaletteEntry& a, const PaletteEntry& b) {
    const int red = a.red - b.red;
    const int green = a.green - b.green;
    const int blue = a.blue - b.blue;
    return red * red + green * green + blue * blue;
}

// Fills `palette` (when given) with the built-in palette `choice`, writes its depth in bits to `depth` (when given) and
// returns its number of colours. Choices 0 to 8 are those of the palette list, 9 is eight primaries; every other number
// counts as 6.
int fixedPalette(Palette* palette, int* depth, int choice);

// The bits that `count` palette colours take: 1 to 8, and 24 for more than 256.
int depthForColours(int count);

// The lowest index among the first `count` entries with the least squared RGB distance to `colour`. `count` is 1 to
// 256.
int nearestEntry(const Palette& palette, int count, Colour colour);

} // namespace veldran
