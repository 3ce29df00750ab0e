// Colour arithmetic that is not worth inlining.
#include "render/colour.h"

#include <algorithm>

namespace veldran {

Colour scaleColour(Colour colour, double factor) {
    const auto scale = [factor](int channel) { return static_cast<int>(std::clamp(channel * factor, 0.0, 255.0)); };
    return makeColour(scale(redOf(colour)), scale(greenOf(colour)), scale(blueOf(colour)));
}

} // namespace veldran
