// JSON as RFC 8259 wants it; see the header.
#include "base/json.h"

#include <cstdio>

namespace stage {
namespace {

// The length of the UTF-8 sequence at the start (RFC 3629: the shortest for its letter, no surrogates, nothing beyond
// U+10FFFF); 0 when there is none.
std::size_t sequenceLength(std::string_view text) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byteAt(0);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 && first <= 0xF4   ? 4
                               : first >= 0xE0 && first <= 0xEF ? 3
                               : first >= 0xC2 && first <= 0xDF ? 2
                                                                : 0;
    if (length == 0 || length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byteAt(i) & 0xC0) != 0x80)
            return 0;
    const unsigned least = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned most = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    return byteAt(1) >= least && byteAt(1) <= most ? length : 0;
}

} // namespace

std::string jsonText(std::string_view utf8) {
    std::string json = "\"";
    while (!utf8.empty()) {
        const std::size_t length = sequenceLength(utf8);
        const char c = utf8[0];
        if (length == 0) {
            json += "\xEF\xBF\xBD";
        } else if (c == '"' || c == '\\') {
            json.append("\\") += c;
        } else if (static_cast<unsigned char>(c) < 32) {
            char escaped[8];
            std::snprintf(escaped, sizeof(escaped), "\\u%04x", static_cast<unsigned>(c));
            json += escaped;
        } else {
            json += utf8.substr(0, length);
        }
        utf8.remove_prefix(length == 0 ? 1 : length);
    }
    return json + '"';
}

std::string jsonNumber(double number) {
    char digits[32];
    std::snprintf(digits, sizeof(digits), "%.3f", number);
    std::string text = digits;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    return text;
}

JsonObject& JsonObject::add(std::string_view name, const std::string& json) {
    members_ += (members_.empty() ? "" : ",") + jsonText(name) + ":" + json;
    return *this;
}

JsonArray& JsonArray::add(const std::string& json) {
    elements_ += (elements_.empty() ? "" : ",") + json;
    return *this;
}

} // namespace stage
