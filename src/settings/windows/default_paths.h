// The default sound, text and image files of the instruments that need one.
#pragma once

#include "settings/settings_table.h"

#include <cstdint>

namespace veldran {

// Which file-path settings get their default.
enum class DefaultPaths : std::uint8_t { WhereEmpty, Everywhere };

// Sets the file paths in `settings` to "Default.wav", "Default.txt" or "Default.jpg" in the editor's folder below the
// person's documents; to the bare file name when there is no documents folder. `hostFlags` are HostParams::flags.
void fillDefaultPaths(PlugInSettings& settings, std::uint32_t hostFlags, DefaultPaths which);

} // namespace veldran
