// The files that the plugin's first settings name, so that an instrument shows something before anything was chosen.
// Never touches a file that is there.
#pragma once

#include "core/animation_recorder.h"

#include <string>
#include <vector>

#include <windows.h>

namespace stage {

// Puts those that are missing into the folder that the plugin looks into, below the person's documents. Answers, in
// words for the person, what could not be written; a render may well succeed without.
std::vector<std::string> placeDefaultFiles(HMODULE plugin, OutputFormat format);

} // namespace stage
