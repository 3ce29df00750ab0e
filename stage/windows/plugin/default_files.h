// The files that the plugin's first settings name, so that an instrument shows something before anything was chosen.
// Never touches a file that is there.
#pragma once

#include "document/file_format.h"

#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

namespace stage {

// Puts those that are missing into the folder that the plugin looks into, below the person's documents. Answers, in
// words for the person, what could not be written; a render may well succeed without.
std::vector<std::string> placeDefaultFiles(HMODULE plugin, OutputFormat format);

// Whether the path (UTF-8) is that of one of these files.
bool isDefaultFile(std::string_view path, OutputFormat format);

} // namespace stage
