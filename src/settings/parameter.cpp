// Ranges of number fields.
#include "settings/parameter.h"

#include <algorithm>
#include <cstdio>

namespace veldran {

NumberRange parseRange(const char* text) {
    NumberRange range{0, 100};
    std::sscanf(text, "%d,%d", &range.minimum, &range.maximum);
    return range;
}

int clampToRange(std::int64_t value, NumberRange range) {
    // The maximum is asked first: it holds even in a range whose minimum lies above it.
    if (value > range.maximum)
        return range.maximum;
    return static_cast<int>(std::max<std::int64_t>(value, range.minimum));
}

} // namespace veldran
