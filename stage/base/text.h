// Small helpers for ASCII text: splitting, numbers, comparing without case, and finding the word that was meant.
// Never depends on the locale: upper and lower case concern the letters A to Z alone.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace stage {

// The pieces between separators; one more than there are separators.
std::vector<std::string_view> split(std::string_view text, char separator);

std::string lowerCase(std::string_view text);
bool equalIgnoringCase(std::string_view a, std::string_view b);

// Seconds with two decimals: "1.50 s".
std::string secondsText(std::uint64_t milliseconds);

enum class NumberBase : int { Decimal = 10, Hexadecimal = 16 };

// The whole text as an unsigned number without sign, prefix or blanks; nothing when it is not one or exceeds 32 bits.
std::optional<std::uint32_t> parseNumber(std::string_view text, NumberBase base = NumberBase::Decimal);

// The known word with the smallest edit distance (insert, remove, replace one letter) from `wanted`, ignoring case; the
// first of equals; empty when there are no known words.
std::string_view nearest(std::string_view wanted, std::span<const std::string_view> known);

} // namespace stage
