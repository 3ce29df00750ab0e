// Checks the value that a person gives for a setting and turns it into the text of the configuration file.
// Never lets a line through that the plugin would read differently from what was meant.
#pragma once

#include "commands/effect_catalog.h"
#include "document/frame.h"

#include <functional>

namespace stage {

// Turns UTF-8 into the bytes that the plugin reads (the system's code page); nothing when a letter has no such byte.
using TextEncoder = std::function<std::optional<std::string>(std::string_view utf8)>;

// The value as the configuration file stores it, encoded when it is a text. Throws Failure(WrongUsage) saying what was
// wrong and what is allowed.
std::string checkedValue(const Setting& setting, std::string_view value, const TextEncoder& encode);

// What may be given, as words: "a whole number from 1 to 360".
std::string allowedValues(const Setting& setting);

// A colour as a person gives it, #RRGGBB, 0xBBGGRR or decimal, as the configuration file stores it: 0x00BBGGRR. Nothing
// when it is none.
std::optional<std::uint32_t> parseColour(std::string_view value);
constexpr Rgb rgbFromColour(std::uint32_t stored) {
    return {static_cast<std::uint8_t>(stored), static_cast<std::uint8_t>(stored >> 8),
            static_cast<std::uint8_t>(stored >> 16)};
}

// A stored value as a person would give it: colours as #RRGGBB, all others unchanged.
std::string shownValue(const Setting& setting, const std::string& stored);

} // namespace stage
