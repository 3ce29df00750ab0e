// Objects are made for each shape: frames draw few of them, and what a frame makes it frees.
#include "render/shapes.h"

#include "base/gdi.h"

namespace veldran {

void fillRectangle(HDC dc, const RECT& rectangle, Colour colour) {
    const Brush brush(CreateSolidBrush(colour));
    FillRect(dc, &rectangle, brush.get());
}

void fillEllipse(HDC dc, const RECT& box, Colour colour) {
    const Brush brush(CreateSolidBrush(colour));
    const Selected selectedBrush(dc, brush.get());
    const Selected pen(dc, GetStockObject(NULL_PEN));
    Ellipse(dc, box.left, box.top, box.right, box.bottom);
}

void fillDisc(HDC dc, POINT centre, int radius, Colour colour) {
    fillEllipse(dc, {centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius}, colour);
}

void fillPolygon(HDC dc, std::span<const POINT> corners, Colour colour) {
    const Brush brush(CreateSolidBrush(colour));
    const Selected selectedBrush(dc, brush.get());
    const Selected pen(dc, GetStockObject(NULL_PEN));
    Polygon(dc, corners.data(), static_cast<int>(corners.size()));
}

void drawLine(HDC dc, POINT from, POINT to, int width, Colour colour) {
    const Pen pen(CreatePen(PS_SOLID, width, colour));
    const Selected selected(dc, pen.get());
    MoveToEx(dc, from.x, from.y, nullptr);
    LineTo(dc, to.x, to.y);
}

} // namespace veldran
