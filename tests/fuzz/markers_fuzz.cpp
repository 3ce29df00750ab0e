// The radar markers' file and its lines.
#include "fuzz_target.h"

#include "instruments/scopes/radar_model.h"
#include "settings/marker_lines.h"

using namespace veldran;
using fuzz::mustHold;

namespace {

// No instrument has a canvas as large as this many pixels beyond any side of the screen.
constexpr int kFarAway = 1'000'000;

void checkLine(std::string_view line) {
    const RadarMarker marker = parseRadarMarker(line);
    const CanvasPoint at = markerPosition(radarGeometry(526, 526, 160, 4), marker);
    mustHold(std::abs(at.x) < 2 * kFarAway && std::abs(at.y) < 2 * kFarAway, "a marker stands where sums stay small");
    const MarkerFault fault = checkMarker(marker.name, marker.bearing, marker.distance);
    mustHold(fault != MarkerFault::NameHasComma, "a name of a line has no comma and no line end");
    const RadarMarker again = parseRadarMarker(formatMarker(marker.name, marker.bearing, marker.distance));
    mustHold(again.name == marker.name && again.bearing == marker.bearing && again.distance == marker.distance,
             "a marker comes back as formatted");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> lines = readMarkerLines(fuzz::Input(data, size).text());
    mustHold(readMarkerLines(writeMarkerLines(lines)) == lines, "lines come back as written");
    for (const std::string& line : lines) {
        mustHold(!line.empty(), "no line is empty");
        checkLine(line);
    }
    return 0;
}
