// What a file remembers of how it was made: settings and markers of the plugin, and the text that carries them in a GIF
// comment or a PNG or MNG text chunk.
// Never holds what the plugin would take for its default anyway, nor paths of instruments that were not rendered.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace stage {

// All UTF-8; lines end with a line feed.
struct Remembered {
    std::string settings; // "KEY = VALUE", as in the plugin's configuration file; the row of the effect among them
    std::optional<std::string> markers; // "name,bearing,distance"; nothing when the instrument has none
    bool operator==(const Remembered&) const = default;
};

// The keyword of the text chunk in PNG and MNG files.
inline constexpr std::string_view kRememberedKeyword = "Voltane #1";

std::string rememberedText(const Remembered& remembered);
// Nothing when the text is something else. Control characters other than line ends make it something else, too.
std::optional<Remembered> rememberedFrom(std::string_view text);

} // namespace stage
