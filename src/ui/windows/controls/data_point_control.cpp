// The sky is artwork; it is stretched over whatever size the plot has.
#include "ui/windows/controls/data_point_control.h"

#include "base/windows/gdi.h"
#include "render/image_view.h"
#include "render/windows/packed_image.h"
#include "ui/windows/controls/control_edge.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <string>
#include <vector>

namespace veldran {
namespace {

constexpr int kSkyArtwork = 7222;
constexpr int kRedZone = 813; // thousandths: 6500 of 8000 revolutions per minute, where the dial's red zone begins
constexpr COLORREF kDarkField = RGB(30, 32, 35);
constexpr COLORREF kRedField = RGB(92, 26, 24);
constexpr COLORREF kPlainSky = RGB(110, 155, 205);
constexpr COLORREF kSeam = RGB(16, 20, 28);
constexpr COLORREF kCurve = RGB(255, 232, 120);
constexpr int kLongestText = 260; // as much of the button's text as instruments read, with its NUL

void strokeCurve(HDC dc, std::span<const POINT> places, int width, COLORREF colour) {
    const Pen pen(CreatePen(PS_SOLID, width, colour));
    const Selected selected(dc, pen.get());
    Polyline(dc, places.data(), static_cast<int>(places.size()));
}

std::vector<DataPoint> pointsOf(HWND control) {
    char text[kLongestText] = "";
    GetWindowTextA(control, text, kLongestText);
    return editableDataPoints(parseDataPoints(text));
}

} // namespace

PointBackdrop::PointBackdrop(PointsKind kind) : kind_(kind) {
    if (kind == PointsKind::Altitude)
        sky_ = loadPackedImage(kSkyArtwork);
}

void PointBackdrop::drawSky(HDC dc, const RECT& plot) const {
    const LockedBlock block(sky_.get());
    const std::optional<ImageView> view = block ? viewPackedBitmap(block.bytes()) : std::nullopt;
    if (!view) {
        fillBox(dc, plot, kPlainSky);
        return;
    }
    const int previous = SetStretchBltMode(dc, HALFTONE);
    StretchDIBits(dc, plot.left, plot.top, plot.right - plot.left, plot.bottom - plot.top, 0, 0, view->width,
                  view->height, block.data() + sizeof(BitmapHeader) + colourTableBytes(view->bits),
                  reinterpret_cast<const BITMAPINFO*>(block.data()), DIB_RGB_COLORS, SRCCOPY);
    SetStretchBltMode(dc, previous);
}

void PointBackdrop::draw(HDC dc, const RECT& plot) const {
    if (kind_ == PointsKind::Altitude) {
        drawSky(dc, plot);
        return;
    }
    fillBox(dc, plot, kDarkField);
    RECT red = plot;
    red.bottom = plotPosition(plot, {0, kRedZone}).y;
    fillBox(dc, red, kRedField);
}

POINT plotPosition(const RECT& plot, DataPoint point) {
    return {plot.left + MulDiv(plot.right - 1 - plot.left, point.position, kLastPosition),
            plot.bottom - 1 - MulDiv(plot.bottom - 1 - plot.top, point.value, kHighestValue)};
}

DataPoint pointAtPlace(const RECT& plot, POINT place) {
    const int width = std::max<int>(plot.right - 1 - plot.left, 1);
    const int height = std::max<int>(plot.bottom - 1 - plot.top, 1);
    return {std::clamp(MulDiv(place.x - plot.left, kLastPosition, width), 0, kLastPosition),
            std::clamp(MulDiv(plot.bottom - 1 - place.y, kHighestValue, height), 0, kHighestValue)};
}

void drawPointCurve(HDC dc, const RECT& plot, std::span<const DataPoint> points, int width) {
    std::vector<POINT> places;
    for (const DataPoint& point : points)
        places.push_back(plotPosition(plot, point));
    strokeCurve(dc, places, width + 2, kSeam);
    strokeCurve(dc, places, width, kCurve);
}

void drawDataPoints(const DRAWITEMSTRUCT& item, PointsKind kind) {
    RECT box = drawControlEdge(item.hDC, item.rcItem, (item.itemState & ODS_SELECTED) != 0, COLOR_WINDOW);
    if ((item.itemState & ODS_DISABLED) == 0) {
        RECT plot = box;
        InflateRect(&plot, -2, -2);
        PointBackdrop(kind).draw(item.hDC, plot);
        InflateRect(&plot, -1, -2); // the curve's seam stays inside
        drawPointCurve(item.hDC, plot, pointsOf(item.hwndItem), scaled(1));
    }
    if ((item.itemState & ODS_FOCUS) != 0) {
        InflateRect(&box, -1, -1);
        DrawFocusRect(item.hDC, &box);
    }
}

} // namespace veldran
