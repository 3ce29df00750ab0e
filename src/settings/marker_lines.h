// Radar markers as text: the lines "name,bearing,distance", and the file that keeps them. Core: knows no windows.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace veldran {

inline constexpr std::size_t kMarkerNameLimit = 32; // characters; a longer label would not fit the screen
inline constexpr int kHighestBearing = 359;         // degrees clockwise from the top
inline constexpr int kHighestDistance = 100;        // per cent of the sweep's radius

// What keeps a marker from being written as a line.
enum class MarkerFault : std::uint8_t { None, NameHasComma, NameTooLong, Bearing, Distance };

// Checks a marker that a person entered; line ends count as commas, since they would break the line too.
MarkerFault checkMarker(std::string_view name, int bearing, int distance);

std::string formatMarker(std::string_view name, int bearing, int distance);

// The lines of a marker file: any line end will do, empty lines are left out, a byte 26 ends the text.
std::vector<std::string> readMarkerLines(std::string_view file);

// Each line with CR LF behind it.
std::string writeMarkerLines(std::span<const std::string> lines);

} // namespace veldran
