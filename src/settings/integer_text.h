// Taking integers and commas off the front of a text, as scanf would. Core: knows no windows.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace veldran {

// White space, an optional sign, digits; what is too large is kept at the nearest integer. Nothing, and `text`
// unchanged but for its blanks, when no integer stands there.
inline std::optional<int> takeInteger(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    std::string_view digits = text;
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error == std::errc::invalid_argument)
        return std::nullopt;
    if (error == std::errc::result_out_of_range)
        value = digits.starts_with('-') ? INT32_MIN : INT32_MAX;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return value;
}

inline bool takeComma(std::string_view& text) {
    if (!text.starts_with(','))
        return false;
    text.remove_prefix(1);
    return true;
}

} // namespace veldran
