// The radar markers' file, "VELDRAN1.MRK" beside the configuration file.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace veldran {

// The stored lines "name,bearing,distance"; an empty list is one that a person emptied. Nothing when no file can be
// read, or while Shift is held, which sets everything back: the caller then has its defaults.
std::optional<std::vector<std::string>> loadMarkers();

// Replaces the file; what fails leaves the old one as it was, and nobody is told.
void saveMarkers(const std::vector<std::string>& lines);

} // namespace veldran
