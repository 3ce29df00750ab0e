// The kinds of files that an animation can be written into: names, extensions, what each is driven as.
// Knows no bytes: writers and readers do.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace stage {

// Png is one still file for each frame, numbered.
enum class OutputFormat { Gif, Apng, Mng, Png };

// "GIF", "APNG", "MNG", "PNG"; and in lower case, without regard to case when read.
std::string_view formatName(OutputFormat format);
std::optional<OutputFormat> formatNamed(std::string_view name);

// ".gif", ".apng", ".mng", ".png".
std::string_view formatExtension(OutputFormat format);
// By the extension, without regard to case; a name that ends in .png is Png, never Apng. Nothing for other names.
std::optional<OutputFormat> formatOfFile(const std::filesystem::path& file);

} // namespace stage
