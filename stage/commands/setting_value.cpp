// Values of settings; see the header. Colours are stored as 0x00BBGGRR and given as #RRGGBB, the order people know.
#include "commands/setting_value.h"

#include "base/failure.h"
#include "base/text.h"

#include <algorithm>
#include <array>

namespace stage {
namespace {

constexpr std::uint32_t kLargestColour = 0xFFFFFF;
// The plugin keeps texts in 261 bytes with their NUL, and reads lines of at most 259 with their line end.
constexpr std::size_t kLongestText = 260;
constexpr std::size_t kLongestLine = 258;

struct FlagWord {
    std::string_view word;
    const char* stored;
};
constexpr std::array<FlagWord, 8> kFlagWords = {
    {{"0", "0"}, {"off", "0"}, {"no", "0"}, {"false", "0"}, {"1", "1"}, {"on", "1"}, {"yes", "1"}, {"true", "1"}}};

std::uint32_t swapRedAndBlue(std::uint32_t colour) {
    return (colour & 0x0000FF) << 16 | (colour & 0x00FF00) | (colour & 0xFF0000) >> 16;
}

std::optional<std::uint32_t> upToLargest(std::optional<std::uint32_t> colour) {
    return colour && *colour > kLargestColour ? std::nullopt : colour;
}

std::optional<std::string> storedFlag(std::string_view value) {
    for (const FlagWord& flag : kFlagWords)
        if (equalIgnoringCase(flag.word, value))
            return flag.stored;
    return std::nullopt;
}

std::optional<std::string> storedNumber(const Setting& setting, std::optional<std::uint32_t> number) {
    std::uint32_t largest = setting.maximum.value_or(0xFFFFFFFF);
    if (setting.kind == SettingKind::Choice)
        largest = std::min(largest, static_cast<std::uint32_t>(setting.choices.size() - 1));
    if (!number || *number < setting.minimum.value_or(0) || *number > largest)
        return std::nullopt;
    return std::to_string(*number);
}

std::optional<std::string> storedText(const Setting& setting, std::optional<std::string> text) {
    constexpr std::string_view kBetween = " = ";
    const auto isControl = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 32 || byte == 127;
    };
    if (!text || text->starts_with(' ') || text->starts_with('=') || std::ranges::any_of(*text, isControl) ||
        text->size() > kLongestText || setting.key.size() + kBetween.size() + text->size() > kLongestLine)
        return std::nullopt;
    return text;
}

std::string allowedNumbers(const Setting& setting) {
    if (!setting.minimum && !setting.maximum)
        return "a whole number";
    if (!setting.maximum)
        return "a whole number from " + std::to_string(*setting.minimum);
    return "a whole number from " + std::to_string(setting.minimum.value_or(0)) + " to " +
           std::to_string(*setting.maximum);
}

std::string allowedChoices(const Setting& setting) {
    std::string words = "a position:";
    for (std::size_t i = 0; i < setting.choices.size(); ++i)
        words += (i == 0 ? " " : ", ") + std::to_string(i) + " " + setting.choices[i];
    return words;
}

} // namespace

std::optional<std::uint32_t> parseColour(std::string_view value) {
    if (value.starts_with('#')) {
        const auto colour = parseNumber(value.substr(1), NumberBase::Hexadecimal);
        return colour && value.size() == 7 ? std::optional(swapRedAndBlue(*colour)) : std::nullopt;
    }
    if (value.starts_with("0x") || value.starts_with("0X"))
        return upToLargest(parseNumber(value.substr(2), NumberBase::Hexadecimal));
    return upToLargest(parseNumber(value));
}

std::string allowedValues(const Setting& setting) {
    switch (setting.kind) {
    case SettingKind::Flag:
        return "0 or 1 (also off and on, no and yes, false and true)";
    case SettingKind::Integer:
        return allowedNumbers(setting);
    case SettingKind::Colour:
        return "a colour: #RRGGBB, 0xBBGGRR or a decimal number";
    case SettingKind::Choice:
        return allowedChoices(setting);
    case SettingKind::Text:
    case SettingKind::File:
        break;
    }
    return "a text of the system's letters, without control characters, not beginning with a blank or \"=\", of at "
           "most " +
           std::to_string(std::min(kLongestText, kLongestLine - setting.key.size() - 3)) + " bytes";
}

std::string shownValue(const Setting& setting, const std::string& stored) {
    const auto colour = parseNumber(stored);
    if (setting.kind != SettingKind::Colour || !colour)
        return stored;
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string shown = "#";
    for (int shift = 20; shift >= 0; shift -= 4)
        shown += kDigits[swapRedAndBlue(*colour) >> shift & 15];
    return shown;
}

std::string checkedValue(const Setting& setting, std::string_view value, const TextEncoder& encode) {
    std::optional<std::string> stored;
    switch (setting.kind) {
    case SettingKind::Flag:
        stored = storedFlag(value);
        break;
    case SettingKind::Integer:
    case SettingKind::Choice:
        stored = storedNumber(setting, parseNumber(value));
        break;
    case SettingKind::Colour:
        stored = storedNumber(setting, parseColour(value));
        break;
    case SettingKind::Text:
    case SettingKind::File:
        stored = storedText(setting, encode(value));
        break;
    }
    if (!stored)
        throw Failure(ExitCode::WrongUsage, "The setting " + setting.key + " cannot be \"" + std::string(value) +
                                                "\". Allowed is " + allowedValues(setting) + ".");
    return *stored;
}

} // namespace stage
