// Ranges of number fields.
#include "settings/parameter.h"

#include "settings/integer_text.h"

#include <algorithm>
#include <charconv>

namespace veldran {

NumberRange parseRange(const char* text) {
    NumberRange range{0, 100};
    std::string_view left = text;
    if (const std::optional<int> minimum = takeInteger(left))
        range.minimum = *minimum;
    if (takeComma(left))
        range.maximum = takeInteger(left).value_or(range.maximum);
    return range;
}

std::int64_t fieldInteger(std::string_view text, NumberRange range) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (range.minimum >= 0 && text.starts_with('-'))
        return 0;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range)
        return text.starts_with('-') ? INT64_MIN : INT64_MAX;
    return value;
}

int clampToRange(std::int64_t value, NumberRange range) {
    // The maximum is asked first: it holds even in a range whose minimum lies above it.
    if (value > range.maximum)
        return range.maximum;
    return static_cast<int>(std::max<std::int64_t>(value, range.minimum));
}

} // namespace veldran
