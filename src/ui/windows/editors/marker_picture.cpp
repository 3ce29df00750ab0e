// Colours are those of a green screen, whatever colours the instrument has.
#include "ui/windows/editors/marker_picture.h"

#include "base/windows/gdi.h"
#include "instruments/scopes/radar_model.h"
#include "settings/marker_lines.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace veldran {
namespace {

constexpr COLORREF kScreen = RGB(12, 26, 16);
constexpr COLORREF kRing = RGB(44, 104, 62);
constexpr COLORREF kOutermostRing = RGB(88, 190, 116);
constexpr COLORREF kMarker = RGB(255, 224, 64);
constexpr COLORREF kChosen = RGB(255, 255, 255);
constexpr double kDegree = std::numbers::pi / 180;
constexpr int kRings = 4; // 25, 50, 75 and 100 %
constexpr int kSpokeStep = 30;
constexpr int kGrabReach = 6; // pixels at 100 %

struct Screen {
    POINT centre;
    int radius; // of 100 %
};

Screen screenIn(const RECT& box) {
    const int side = static_cast<int>(std::min(box.right - box.left, box.bottom - box.top));
    return {{(box.left + box.right) / 2, (box.top + box.bottom) / 2}, std::max(side / 2 - scaled(12), 1)};
}

POINT polar(const Screen& screen, double bearing, double distance) {
    const double radius = screen.radius * distance / 100;
    return {screen.centre.x + std::lround(radius * std::sin(bearing * kDegree)),
            screen.centre.y - std::lround(radius * std::cos(bearing * kDegree))};
}

POINT placeOf(const Screen& screen, const RadarMarker& marker) {
    return polar(screen, marker.bearing, marker.distance);
}

void drawCircle(HDC dc, const Screen& screen, int radius) {
    Ellipse(dc, screen.centre.x - radius, screen.centre.y - radius, screen.centre.x + radius + 1,
            screen.centre.y + radius + 1);
}

void drawScreen(HDC dc, const Screen& screen) {
    const Brush inside(CreateSolidBrush(kScreen));
    const Pen ring(CreatePen(PS_SOLID, 1, kRing));
    const Pen outermost(CreatePen(PS_SOLID, 1, kOutermostRing));
    const Selected selectedBrush(dc, inside.get());
    const Selected selectedPen(dc, outermost.get());
    drawCircle(dc, screen, screen.radius + scaled(10));
    drawCircle(dc, screen, screen.radius);
    const Selected noFill(dc, GetStockObject(NULL_BRUSH));
    const Selected dimPen(dc, ring.get());
    for (int i = 1; i < kRings; ++i)
        drawCircle(dc, screen, screen.radius * i / kRings);
    for (int bearing = 0; bearing < 360; bearing += kSpokeStep) {
        const POINT from = polar(screen, bearing, bearing % 90 == 0 ? 0 : 100);
        const POINT to = polar(screen, bearing, bearing % 90 == 0 ? 100 : 105);
        MoveToEx(dc, from.x, from.y, nullptr);
        LineTo(dc, to.x, to.y);
    }
}

void drawMarker(HDC dc, const Screen& screen, const RadarMarker& marker, COLORREF colour) {
    const POINT at = placeOf(screen, marker);
    const int reach = scaled(3);
    const Brush brush(CreateSolidBrush(colour));
    const RECT square{at.x - reach, at.y - reach, at.x + reach, at.y + reach};
    FillRect(dc, &square, brush.get());
    const TextStyle style(dc, colour);
    // Names point to the middle, as the instrument's labels do, so that they stay on the screen.
    const bool isRight = at.x > screen.centre.x;
    const UINT previous = SetTextAlign(dc, (isRight ? TA_RIGHT : TA_LEFT) | TA_TOP);
    SIZE size{};
    const auto length = static_cast<int>(marker.name.size());
    GetTextExtentPoint32A(dc, marker.name.c_str(), length, &size);
    TextOutA(dc, isRight ? at.x - reach - scaled(6) : at.x + reach + scaled(6), at.y - size.cy / 2, marker.name.c_str(),
             length);
    SetTextAlign(dc, previous);
}

} // namespace

void drawMarkerPicture(HDC dc, const RECT& box, std::span<const std::string> lines, int chosen) {
    const Screen screen = screenIn(box);
    FillRect(dc, &box, GetSysColorBrush(COLOR_BTNFACE));
    drawScreen(dc, screen);
    for (const std::string& line : lines)
        drawMarker(dc, screen, parseRadarMarker(line), kMarker);
    if (chosen < 0 || chosen >= static_cast<int>(lines.size()))
        return;
    const RadarMarker marker = parseRadarMarker(lines[static_cast<std::size_t>(chosen)]);
    drawMarker(dc, screen, marker, kChosen);
    const Pen pen(CreatePen(PS_SOLID, 1, kChosen));
    const Selected selectedPen(dc, pen.get());
    const Selected noFill(dc, GetStockObject(NULL_BRUSH));
    drawCircle(dc, {placeOf(screen, marker), 0}, scaled(7));
}

std::optional<int> markerUnder(const RECT& box, std::span<const std::string> lines, POINT point) {
    const Screen screen = screenIn(box);
    const int reach = scaled(kGrabReach);
    for (auto i = static_cast<int>(lines.size()); i-- > 0;) {
        const POINT at = placeOf(screen, parseRadarMarker(lines[static_cast<std::size_t>(i)]));
        if (std::abs(at.x - point.x) <= reach && std::abs(at.y - point.y) <= reach)
            return i;
    }
    return std::nullopt;
}

MarkerPlace placeUnder(const RECT& box, POINT point) {
    const Screen screen = screenIn(box);
    const double right = point.x - screen.centre.x;
    const double up = screen.centre.y - point.y;
    const auto degrees = static_cast<int>(std::lround(std::atan2(right, up) / kDegree));
    const auto distance = static_cast<int>(std::lround(std::hypot(right, up) * 100 / screen.radius));
    return {(degrees + 360) % 360, std::min(distance, kHighestDistance)};
}

} // namespace veldran
