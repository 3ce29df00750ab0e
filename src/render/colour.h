// Colours are 0x00BBGGRR: red in the low byte. The arithmetic on them that all pictures share.
// Core: knows no windows.
#pragma once

#include <cstdint>

namespace veldran {

using Colour = std::uint32_t;

inline constexpr Colour kNoColour = 0xFFFFFFFF; // an instrument without a background reports this

constexpr int redOf(Colour colour) {
    return static_cast<int>(colour & 0xFF);
}
constexpr int greenOf(Colour colour) {
    return static_cast<int>(colour >> 8 & 0xFF);
}
constexpr int blueOf(Colour colour) {
    return static_cast<int>(colour >> 16 & 0xFF);
}

// The low byte of each channel counts.
constexpr Colour makeColour(int red, int green, int blue) {
    return (static_cast<Colour>(red) & 0xFF) | (static_cast<Colour>(green) & 0xFF) << 8 |
           (static_cast<Colour>(blue) & 0xFF) << 16;
}

// value / 255, truncated, for products of two bytes: with v = 255 q + r, (v + 1 + v / 256) / 256 is q. Exact up to
// 255 x 255, which a test walks through.
constexpr int divideBy255(int value) {
    return (value + 1 + (value >> 8)) >> 8;
}

// Weight `weight` of `over` on `under`; the two products are truncated apart, so equal channels may lose 1.
constexpr int blendChannel(int under, int over, int weight) {
    return divideBy255(under * (255 - weight)) + divideBy255(over * weight);
}

// Weight `weight` (0 to 255) of `over` on `under`, truncated once: equal colours stay.
constexpr Colour mixColours(Colour under, Colour over, int weight) {
    const auto mix = [weight](int plain, int lit) { return divideBy255(lit * weight + plain * (255 - weight)); };
    return makeColour(mix(redOf(under), redOf(over)), mix(greenOf(under), greenOf(over)),
                      mix(blueOf(under), blueOf(over)));
}

// Each channel times `factor`, limited to 0 to 255 and truncated. Above 1 brightens, below 1 darkens.
Colour scaleColour(Colour colour, double factor);

// The colour under light or in shadow: tone 1 gives white, -1 black, 0 leaves it. Beyond counts as the nearest.
Colour tonedColour(Colour colour, double tone);

// A pale colour's hue in full: its grey part is taken out nearly whole, its brightest channel stretched to 255. Greys
// become white, black stays.
Colour vividColour(Colour colour);

} // namespace veldran
