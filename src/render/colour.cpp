// Colour arithmetic that is not worth inlining.
#include "render/colour.h"

#include <algorithm>
#include <cmath>

namespace veldran {

Colour scaleColour(Colour colour, double factor) {
    const auto scale = [factor](int channel) { return static_cast<int>(std::clamp(channel * factor, 0.0, 255.0)); };
    return makeColour(scale(redOf(colour)), scale(greenOf(colour)), scale(blueOf(colour)));
}

Colour tonedColour(Colour colour, double tone) {
    const double limited = std::clamp(tone, -1.0, 1.0);
    return mixColours(colour, limited > 0 ? 0xFFFFFF : 0x000000, static_cast<int>(255 * std::abs(limited) + 0.5));
}

Colour vividColour(Colour colour) {
    constexpr double kGreyTaken = 0.92;
    const std::pair<int, int> range = std::minmax({redOf(colour), greenOf(colour), blueOf(colour)});
    const int most = range.second;
    const double grey = kGreyTaken * range.first;
    const auto stretch = [=](int channel) {
        return most == 0 ? 0 : static_cast<int>((channel - grey) / (most - grey) * 255 + 0.5);
    };
    return makeColour(stretch(redOf(colour)), stretch(greenOf(colour)), stretch(blueOf(colour)));
}

} // namespace veldran
