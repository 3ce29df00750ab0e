// Helpers for ASCII text; see the header.
#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <numeric>

namespace stage {
namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (lower(from[i]) == lower(to[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const std::size_t end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return pieces;
        text.remove_prefix(end + 1);
    }
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), lower);
    return result;
}

std::string secondsText(std::uint64_t milliseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f s", static_cast<double>(milliseconds) / 1000);
    return text;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::optional<std::uint32_t> parseNumber(std::string_view text, NumberBase base) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, static_cast<int>(base));
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::string_view nearest(std::string_view wanted, std::span<const std::string_view> known) {
    std::string_view best;
    std::size_t bestDistance = std::numeric_limits<std::size_t>::max();
    for (const std::string_view word : known) {
        const std::size_t distance = editDistance(wanted, word);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = word;
        }
    }
    return best;
}

} // namespace stage
