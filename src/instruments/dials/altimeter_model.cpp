// Altimeter: numbers only.
#include "instruments/dials/altimeter_model.h"

#include "instruments/point_table.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace veldran {
namespace {

constexpr double kFullScaleFeet = fullScale(PointsKind::Altitude);
constexpr CanvasPoint kFaceCentre{384, 384}; // the middle of the face

double altitudeAt(const PointStretch& stretch, std::int64_t index) {
    const auto frames = static_cast<double>(stretch.frames);
    return stretch.from + static_cast<double>(index) * (stretch.to - stretch.from) / frames;
}

int degreesOf(double feet, double turn) {
    return towardsZero(feet / turn * 360);
}

// A corner of the right half of a pointer that points up.
struct OutlineCorner {
    double right;
    double up;
};

// From the tip down. The short pointer widens to a broad head, the medium one is broad all along, and the long one is
// thin and reaches into the minor marks, which lie 325 to 345 from the pivot. At 96 pixels, an eighth of the face's
// size, they are 8.5, 7.5 and 2.8 pixels wide, which keeps the three apart.
constexpr OutlineCorner kTenThousandsOutline[] = {{0, 190}, {34, 150}, {9, 0}};
constexpr OutlineCorner kThousandsOutline[] = {{0, 232}, {30, 170}, {22, 0}, {14, -60}};
constexpr OutlineCorner kHundredsOutline[] = {{0, 334}, {11, 290}, {10, 0}, {16, -96}};

// Clockwise about the pivot.
CanvasPoint turned(CanvasPoint pivot, OutlineCorner corner, int degrees) {
    const double sine = sineOfDegrees(degrees);
    const double cosine = cosineOfDegrees(degrees);
    return {pivot.x + static_cast<int>(std::lround(corner.right * cosine + corner.up * sine)),
            pivot.y + static_cast<int>(std::lround(corner.right * sine - corner.up * cosine))};
}

// Down the right side, up the left one.
std::vector<CanvasPoint> pointer(CanvasPoint pivot, std::span<const OutlineCorner> outline, int degrees) {
    std::vector<CanvasPoint> polygon;
    for (const OutlineCorner& corner : outline)
        polygon.push_back(turned(pivot, corner, degrees));
    for (std::size_t i = outline.size() - 1; i > 0; --i)
        polygon.push_back(turned(pivot, {-outline[i].right, outline[i].up}, degrees));
    return polygon;
}

constexpr int kHubRadius = 44;
constexpr int kHubStep = 2;

// From light grey at the rim, 200, to dark at the middle, 31.
int hubGrey(int disc) {
    return (51000 - 184 * (255 * disc / 12)) / 255;
}

constexpr CanvasRect kPressureWindow{570, 289, 750, 469};

// Whole numbers only: the runtime library prints fractions with memory whose lack it does not notice.
DrumText drumText(int pad, const char* blanks, std::int64_t tenths, CanvasPoint offset, int escapement) {
    char text[32]; // nine digits at most before the point
    std::snprintf(text, sizeof text, "%s%s%lld.%lld", blanks, tenths < 0 ? "-" : "", std::llabs(tenths) / 10,
                  std::llabs(tenths) % 10);
    const int x = pad + offset.x;
    const int y = pad + offset.y;
    return {text,
            {kPressureWindow.left + x, kPressureWindow.top + y, kPressureWindow.right + x, kPressureWindow.bottom + y},
            escapement};
}

} // namespace

std::vector<int> altimeterAltitudes(std::string_view points, int frames) {
    std::vector<int> altitudes;
    for (const double altitude : pointTable(parseDataPoints(points), frames, altitudeAt))
        altitudes.push_back(towardsZero(altitude * kFullScaleFeet));
    return altitudes;
}

AltimeterAngles altimeterAngles(int feet) {
    const double h = feet;
    return {degreesOf(std::fmod(h, 1000), 1000), degreesOf(std::fmod(h, 10000), 10000), degreesOf(h, 100000)};
}

AltimeterPointers altimeterPointers(int pad, const AltimeterAngles& angles) {
    const CanvasPoint pivot{kFaceCentre.x + pad, kFaceCentre.y + pad};
    return {pointer(pivot, kTenThousandsOutline, angles.tenThousands),
            pointer(pivot, kThousandsOutline, angles.thousands), pointer(pivot, kHundredsOutline, angles.hundreds)};
}

std::array<HubDisc, 12> altimeterHub(int pad) {
    std::array<HubDisc, 12> hub{};
    for (int i = 0; i < static_cast<int>(hub.size()); ++i) {
        const int radius = kHubRadius - i * kHubStep;
        const int grey = hubGrey(i);
        const CanvasPoint corner{kFaceCentre.x + pad - radius, kFaceCentre.y + pad - radius};
        hub[static_cast<std::size_t>(i)] = {rectAt(corner, 2 * radius, 2 * radius), makeColour(grey, grey, grey)};
    }
    return hub;
}

// Tilted text turns about its upper left corner; the offsets bring the three columns of figures under each other.
std::array<DrumText, 3> altimeterDrum(int pad, std::uint32_t pressureTenths) {
    const std::int64_t tenths = pressureTenths;
    return {drumText(pad, "  ", tenths, {2, 0}, 0), drumText(pad, " ", tenths - 1, {7, -30}, 70),
            drumText(pad, " ", tenths + 1, {11, 30}, -70)};
}

} // namespace veldran
