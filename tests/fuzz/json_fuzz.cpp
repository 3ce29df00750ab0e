// Texts of files and people in the reports for scripts: valid JSON, whatever they hold, and the same once read.
#include "fuzz_target.h"

#include "core/json.h"

#include <optional>

using fuzz::mustHold;

namespace {

// The code point at the front of UTF-8 (RFC 3629), taken off; nothing where that is none.
std::optional<std::uint32_t> takeCodePoint(std::string_view& text) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byteAt(0);
    const std::size_t length = first < 0x80 ? 1 : first >> 5 == 6 ? 2 : first >> 4 == 14 ? 3 : first >> 3 == 30 ? 4 : 0;
    if (length == 0 || length > text.size())
        return std::nullopt;
    std::uint32_t point = length == 1 ? first : first & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (byteAt(i) >> 6 != 2)
            return std::nullopt;
        point = point << 6 | (byteAt(i) & 0x3F);
    }
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (point < kLeast[length] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF))
        return std::nullopt;
    text.remove_prefix(length);
    return point;
}

bool isUtf8(std::string_view text) {
    while (!text.empty())
        if (!takeCodePoint(text))
            return false;
    return true;
}

// The text of a JSON string without its quotes.
std::string unescaped(std::string_view json) {
    std::string text;
    while (!json.empty()) {
        mustHold(json[0] != '"' && static_cast<unsigned char>(json[0]) >= 32,
                 "quotes and control characters are escaped");
        if (json[0] != '\\') {
            text += json[0];
            json.remove_prefix(1);
            continue;
        }
        mustHold(json.size() >= 2, "an escape is whole");
        if (json[1] == 'u') {
            mustHold(json.size() >= 6, "an escape has four digits");
            text += static_cast<char>(std::stoul(std::string(json.substr(2, 4)), nullptr, 16));
            json.remove_prefix(6);
        } else {
            text += json[1];
            json.remove_prefix(2);
        }
    }
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::Input(data, size).text();
    const std::string json = stage::jsonText(text);
    mustHold(json.size() >= 2 && json.front() == '"' && json.back() == '"', "a text stands in quotes");
    mustHold(isUtf8(json), "JSON is UTF-8");
    const std::string read = unescaped(std::string_view(json).substr(1, json.size() - 2));
    mustHold(!isUtf8(text) || read == text, "a text comes back");
    return 0;
}
