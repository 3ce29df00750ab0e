// Text between UTF-8 (inside this program), UTF-16 (Windows) and the system's code page (the plugin).
// Never loses a letter silently where the text is a person's input.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace stage {

std::wstring wideFromUtf8(std::string_view utf8);
std::string utf8FromWide(std::wstring_view wide);
std::wstring wideFromSystem(std::string_view text);
std::string utf8FromSystem(std::string_view text);

// Nothing when a letter is missing in the system's code page.
std::optional<std::string> systemFromUtf8(std::string_view utf8);

} // namespace stage
