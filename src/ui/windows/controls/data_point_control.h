// Data points as a small picture: an owner-drawn button that shows its text's curve, and the parts that the editor's
// large picture is drawn with too.
#pragma once

#include "base/windows/global_block.h"
#include "settings/data_points.h"

#include <span>

#include <windows.h>

namespace veldran {

// Draws the button `item`, whose window text is the list of points.
void drawDataPoints(const DRAWITEMSTRUCT& item, PointsKind kind);

// What lies behind a curve: a tachometer's dark field with its red zone, or a sky. Drawn without artwork when that
// cannot be loaded.
class PointBackdrop {
public:
    explicit PointBackdrop(PointsKind kind);
    void draw(HDC dc, const RECT& plot) const;

private:
    void drawSky(HDC dc, const RECT& plot) const;

    PointsKind kind_;
    GlobalBlock sky_;
};

// Where a point lies in a plot; the ends lie on its first and last pixels.
POINT plotPosition(const RECT& plot, DataPoint point);
// The point of the curve's grid nearest to a place, which may lie outside.
DataPoint pointAtPlace(const RECT& plot, POINT place);

// The curve with a dark seam, which keeps it readable on any backdrop. `width` in pixels.
void drawPointCurve(HDC dc, const RECT& plot, std::span<const DataPoint> points, int width);

} // namespace veldran
