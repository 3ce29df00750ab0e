// Geometry that the instruments share: points and rectangles of a canvas, the size of a canvas around an artwork, hands
// that turn. Core: knows no windows.
#pragma once

namespace veldran {

// Pixels of the canvas, origin at the top left, y downwards.
struct CanvasPoint {
    int x;
    int y;
    bool operator==(const CanvasPoint&) const = default;
};

// Right and bottom lie outside.
struct CanvasRect {
    int left;
    int top;
    int right;
    int bottom;
    bool operator==(const CanvasRect&) const = default;
};

constexpr CanvasRect rectAt(CanvasPoint topLeft, int width, int height) {
    return {topLeft.x, topLeft.y, topLeft.x + width, topLeft.y + height};
}

constexpr CanvasRect insetBy(const CanvasRect& rectangle, int by) {
    return {rectangle.left + by, rectangle.top + by, rectangle.right - by, rectangle.bottom - by};
}

// A canvas that is drawn in the artwork's pixels, with a margin on all sides, and reduced at the end.
struct ArtworkGeometry {
    int unit; // artwork pixels to an output pixel
    int pad;  // the margin
    int width;
    int height;
    int percent; // the reduction of the finished frame
};

// The output is about `size` pixels high, its margin about `padding` pixels wide: `unit` and `percent` are truncated.
ArtworkGeometry artworkGeometry(int artworkWidth, int artworkHeight, int size, int padding);

// Without its fraction, and limited to what an int holds.
int towardsZero(double value);

// With pi as exact as a double holds it.
double sineOfDegrees(double degrees);
double cosineOfDegrees(double degrees);

// 3.14159 / 180: hands and needles end where this pi puts them. Pointers that fill areas use the exact one.
inline constexpr double kDialRadians = 0.017453277777777776;

// The end of a hand that points `degrees` clockwise from the top; the offset from the centre is truncated.
CanvasPoint handEnd(CanvasPoint centre, int length, int degrees);

} // namespace veldran
