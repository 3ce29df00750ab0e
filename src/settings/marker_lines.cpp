// The renderer reads the lines themselves; here they are only put together and taken apart.
#include "settings/marker_lines.h"

#include <algorithm>

namespace veldran {

MarkerFault checkMarker(std::string_view name, int bearing, int distance) {
    if (name.find_first_of(",\r\n") != std::string_view::npos)
        return MarkerFault::NameHasComma;
    if (name.size() > kMarkerNameLimit)
        return MarkerFault::NameTooLong;
    if (bearing < 0 || bearing > kHighestBearing)
        return MarkerFault::Bearing;
    if (distance < 0 || distance > kHighestDistance)
        return MarkerFault::Distance;
    return MarkerFault::None;
}

std::string formatMarker(std::string_view name, int bearing, int distance) {
    return std::string(name) + ',' + std::to_string(bearing) + ',' + std::to_string(distance);
}

std::vector<std::string> readMarkerLines(std::string_view file) {
    constexpr char kEndOfText = 26;
    std::vector<std::string> lines;
    file = file.substr(0, file.find(kEndOfText));
    while (!file.empty()) {
        const std::size_t end = std::min(file.find_first_of("\r\n"), file.size());
        if (end > 0)
            lines.emplace_back(file.substr(0, end));
        file.remove_prefix(std::min(end + 1, file.size()));
    }
    return lines;
}

std::string writeMarkerLines(std::span<const std::string> lines) {
    std::string file;
    for (const std::string& line : lines)
        file += line + "\r\n";
    return file;
}

} // namespace veldran
