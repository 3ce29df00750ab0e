// A person's own files: read whole, replaced safely, kept in the plugin's folder of the application data.
// Never leaves half a file, and tells nobody of a failure but its caller.
#pragma once

#include <optional>
#include <string>

namespace veldran {

// The folder of a person's plugin data with a backslash at its end, whether it exists or not; empty when the shell has
// no application-data folder.
std::string personalFolder();

// The bytes of a file; nothing when it cannot be read or is larger than 64 MB, which no file of ours is.
std::optional<std::string> readWholeFile(const std::string& path);

// Writes a temporary file beside `path` (its name with the process number), which then takes its place; makes the
// folder when it is missing (not the folder above it). False leaves an old file as it was.
bool replaceFile(const std::string& path, const std::string& bytes);

} // namespace veldran
