// Data points as text, as the list that a person edits, and what tachometer and altimeter make of them. Bytes: frames,
// a byte for each of a number of edits and their places, text.
#include "fuzz_target.h"

#include "instruments/dials/altimeter_model.h"
#include "instruments/dials/tachometer_model.h"
#include "settings/data_points.h"

#include <cmath>

using namespace veldran;
using fuzz::mustHold;

namespace {

void checkEditable(std::span<const DataPoint> points) {
    mustHold(points.size() >= 2 && points.size() <= kMostDataPoints, "a list has 2 to 24 points");
    mustHold(points.front().position == 0 && points.back().position == kLastPosition, "a list goes from 0 to 100");
    for (std::size_t i = 0; i < points.size(); ++i) {
        mustHold(i == 0 || points[i].position > points[i - 1].position, "points follow one another");
        mustHold(points[i].value >= 0 && points[i].value <= kHighestValue, "a value lies on the scale");
    }
}

struct Edit {
    std::uint8_t kind, index;
    std::int16_t position;
    std::int32_t value;
};

void apply(const Edit& edit, std::vector<DataPoint>& points) {
    if (edit.kind % 3 == 0) {
        const auto index = insertDataPoint(points, {edit.position, edit.value});
        mustHold(!index || *index < points.size(), "the index is one of the list");
    } else if (edit.kind % 3 == 1) {
        moveDataPoint(points, edit.index, {edit.position, edit.value});
    } else {
        removeDataPoint(points, edit.index);
    }
    checkEditable(points);
}

void checkInstruments(std::string_view text, int frames) {
    const std::vector<int> altitudes = altimeterAltitudes(text, frames);
    const std::vector<double> speeds = tachometerSpeeds(text, frames);
    const auto count = static_cast<std::size_t>(frames);
    mustHold(altitudes.size() == count && speeds.size() == count, "there is a value a frame");
    for (const int altitude : altitudes)
        for (const CanvasPoint corner : altimeterPointers(0, altimeterAngles(altitude)).hundreds)
            mustHold(corner.x > 0 && corner.x < 768 && corner.y > 0 && corner.y < 768, "pointers lie on the face");
    for (const double speed : speeds) {
        const CanvasPoint tip = tachometerNeedle(0, speed).tip;
        mustHold(tip.x > 0 && tip.x < 545 && tip.y > 0 && tip.y < 545, "the needle lies on the face");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const int frames = static_cast<int>(input.number(255));
    std::vector<Edit> edits(input.number(7));
    for (Edit& edit : edits)
        edit = input.take<Edit>();
    const std::vector<DataPoint> points = parseDataPoints(input.text());
    mustHold(points.size() <= kMostDataPoints, "no more points are read than a list has");
    mustHold(parseDataPoints(formatDataPoints(points)) == points, "points come back as formatted");
    checkInstruments(input.text(), frames);
    std::vector<DataPoint> edited = editableDataPoints(points);
    checkEditable(edited);
    mustHold(editableDataPoints(edited) == edited, "what can be edited stays as it is");
    for (const Edit& edit : edits)
        apply(edit, edited);
    return 0;
}
