// Where the markers' file stands.
#include "settings/windows/marker_store.h"

#include "base/windows/file.h"
#include "settings/marker_lines.h"
#include "settings/windows/settings_store.h"

namespace veldran {
namespace {

std::string markerPath() {
    const std::string folder = personalFolder();
    return folder.empty() ? folder : folder + "VELDRAN1.MRK";
}

} // namespace

std::optional<std::vector<std::string>> loadMarkers() {
    const std::string path = markerPath();
    if (path.empty() || isShiftHeld())
        return std::nullopt;
    const std::optional<std::string> file = readWholeFile(path);
    if (!file)
        return std::nullopt;
    return readMarkerLines(*file);
}

void saveMarkers(const std::vector<std::string>& lines) {
    const std::string path = markerPath();
    if (!path.empty())
        replaceFile(path, writeMarkerLines(lines));
}

} // namespace veldran
