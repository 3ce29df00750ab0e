// Objects are made for each shape: frames draw few of them, and what a frame makes it frees.
#include "render/windows/shapes.h"

namespace veldran {
namespace {

Brush solidBrush(Colour colour) {
    return required(Brush(CreateSolidBrush(colour)));
}

} // namespace

void fillRectangle(HDC dc, const RECT& rectangle, Colour colour) {
    const Brush brush = solidBrush(colour);
    FillRect(dc, &rectangle, brush.get());
}

void fillEllipse(HDC dc, const RECT& box, Colour colour) {
    const Brush brush = solidBrush(colour);
    const Selected selectedBrush(dc, brush.get());
    const Selected pen(dc, GetStockObject(NULL_PEN));
    Ellipse(dc, box.left, box.top, box.right, box.bottom);
}

void fillDisc(HDC dc, POINT centre, int radius, Colour colour) {
    fillEllipse(dc, {centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius}, colour);
}

void fillPolygon(HDC dc, std::span<const POINT> corners, Colour colour) {
    const Brush brush = solidBrush(colour);
    const Selected selectedBrush(dc, brush.get());
    const Selected pen(dc, GetStockObject(NULL_PEN));
    Polygon(dc, corners.data(), static_cast<int>(corners.size()));
}

void fillAroundRoundedRectangle(HDC dc, const RECT& rectangle, int cornerWidth, int cornerHeight, Colour colour) {
    const Region around = required(Region(CreateRectRgnIndirect(&rectangle)));
    // Unlike other regions, rounded ones end a pixel before their right and bottom.
    const Region inside = required(Region(CreateRoundRectRgn(rectangle.left, rectangle.top, rectangle.right + 1,
                                                             rectangle.bottom + 1, cornerWidth, cornerHeight)));
    CombineRgn(around.get(), around.get(), inside.get(), RGN_DIFF);
    const Brush brush = solidBrush(colour);
    FillRgn(dc, around.get(), brush.get());
}

void drawLine(HDC dc, POINT from, POINT to, int width, Colour colour) {
    const POINT corners[] = {from, to};
    drawPolyline(dc, corners, width, colour);
}

void drawPolyline(HDC dc, std::span<const POINT> corners, int width, Colour colour) {
    const Pen pen = required(Pen(CreatePen(PS_SOLID, width, colour)));
    const Selected selected(dc, pen.get());
    Polyline(dc, corners.data(), static_cast<int>(corners.size()));
}

void drawRectangle(HDC dc, const RECT& rectangle, int width, Colour colour) {
    const Pen pen = required(Pen(CreatePen(PS_SOLID, width, colour)));
    const Selected selectedPen(dc, pen.get());
    const Selected brush(dc, GetStockObject(NULL_BRUSH));
    Rectangle(dc, rectangle.left, rectangle.top, rectangle.right, rectangle.bottom);
}

// Antialiased whatever the system's font smoothing: coloured fringes would cost palette entries.
Font pictureFont(const char* name, bool bold, int height, int escapement) {
    return required(Font(CreateFontA(height, 0, escapement, escapement, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                                     DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                                     DEFAULT_PITCH, name)));
}

Font boldArial(int height, int escapement) {
    return pictureFont("Arial", true, height, escapement);
}

} // namespace veldran
