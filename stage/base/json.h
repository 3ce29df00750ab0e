// Builds a line of JSON, member by member.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace stage {

// In double quotes. Bytes that are not UTF-8 become U+FFFD.
std::string jsonText(std::string_view utf8);
// With up to three digits behind the point.
std::string jsonNumber(double number);

// `{"a":1,"b":[...]}`; values are JSON already.
class JsonObject {
public:
    JsonObject& add(std::string_view name, const std::string& json);
    JsonObject& addText(std::string_view name, std::string_view utf8) { return add(name, jsonText(utf8)); }
    JsonObject& addNumber(std::string_view name, std::uint64_t number) { return add(name, std::to_string(number)); }
    std::string text() const { return "{" + members_ + "}"; }

private:
    std::string members_;
};

class JsonArray {
public:
    JsonArray& add(const std::string& json);
    std::string text() const { return "[" + elements_ + "]"; }

private:
    std::string elements_;
};

} // namespace stage
