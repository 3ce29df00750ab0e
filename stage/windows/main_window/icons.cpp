// Shapes are drawn eight times as large and averaged; see the header.
#include "windows/main_window/icons.h"

#include <array>
#include <initializer_list>

namespace stage {
namespace {

constexpr int kGrid = 16;
constexpr int kOversampling = 8;
constexpr COLORREF kInk = RGB(255, 255, 255); // what is drawn becomes opacity
constexpr COLORREF kNothing = RGB(0, 0, 0);

// Draws on a grid of 16 by 16, whose points lie on the pixels' corners.
class Sketch {
public:
    explicit Sketch(int side)
        : size_(side * kOversampling), buffer_(size_, size_), brush_(CreateSolidBrush(kInk)),
          eraser_(CreateSolidBrush(kNothing)) {
        fillArea(buffer_.dc(), {0, 0, size_, size_}, kNothing);
    }

    struct Point {
        double x;
        double y;
    };

    void polygon(std::initializer_list<Point> points) {
        std::vector<POINT> corners;
        for (const Point& point : points)
            corners.push_back(at(point));
        const Selected brush(buffer_.dc(), brush_.get());
        const Selected pen(buffer_.dc(), GetStockObject(NULL_PEN));
        Polygon(buffer_.dc(), corners.data(), static_cast<int>(corners.size()));
    }

    void box(double left, double top, double right, double bottom) {
        const POINT a = at({left, top});
        const POINT b = at({right, bottom});
        fillArea(buffer_.dc(), {a.x, a.y, b.x, b.y}, kInk);
    }

    void frame(double left, double top, double right, double bottom, double width) {
        line({{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}}, width);
    }

    void line(std::initializer_list<Point> points, double width) {
        const Drawing pen(buffer_.dc(), length(width));
        std::vector<POINT> places;
        for (const Point& point : points)
            places.push_back(at(point));
        Polyline(buffer_.dc(), places.data(), static_cast<int>(places.size()));
    }

    void ring(double x, double y, double radius, double width) {
        const Drawing pen(buffer_.dc(), length(width));
        const Selected brush(buffer_.dc(), GetStockObject(NULL_BRUSH));
        ellipse(x, y, radius);
    }

    void disc(double x, double y, double radius) { fillDisc(x, y, radius, brush_.get()); }
    void erase(double x, double y, double radius) { fillDisc(x, y, radius, eraser_.get()); }

    Picture finish(int side, Rgb colour) {
        const ScreenTarget target = buffer_.target();
        Picture large{static_cast<std::uint32_t>(size_), static_cast<std::uint32_t>(size_), {}};
        large.pixels.reserve(target.pixels.size());
        for (const std::uint32_t pixel : target.pixels)
            large.pixels.push_back(pixelOf(colour, pixel & 0xFF));
        return resizedPicture(large, side, side);
    }

private:
    // A pen with round ends for the scope's life.
    struct Drawing {
        Drawing(HDC dc, int width)
            // NOLINTNEXTLINE(misc-redundant-expression): choices whose number is 0 are named all the same
            : pen(ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_MITER, static_cast<DWORD>(width),
                               brush(), 0, nullptr)),
              selected(dc, pen.get()) {}
        static const LOGBRUSH* brush() {
            static const LOGBRUSH ink{BS_SOLID, kInk, 0};
            return &ink;
        }
        Owner<HPEN, ::DeleteObject> pen;
        Selected selected;
    };

    int length(double units) const { return static_cast<int>(units * size_ / kGrid + 0.5); }
    POINT at(const Point& point) const { return {length(point.x), length(point.y)}; }
    void ellipse(double x, double y, double radius) {
        Ellipse(buffer_.dc(), length(x - radius), length(y - radius), length(x + radius), length(y + radius));
    }
    void fillDisc(double x, double y, double radius, HBRUSH with) {
        const Selected brush(buffer_.dc(), with);
        const Selected pen(buffer_.dc(), GetStockObject(NULL_PEN));
        ellipse(x, y, radius);
    }

    int size_;
    BackBuffer buffer_;
    Brush brush_;
    Brush eraser_;
};

void lens(Sketch& sketch) {
    sketch.ring(6.5, 6.5, 4.5, 1.5);
    sketch.line({{10, 10}, {14, 14}}, 2);
    sketch.line({{4.5, 6.5}, {8.5, 6.5}}, 1.4);
}

void slider(Sketch& sketch, double y, double knob) {
    sketch.line({{2, y}, {14, y}}, 1.2);
    sketch.erase(knob, y, 2.6);
    sketch.disc(knob, y, 1.9);
}

void corner(Sketch& sketch, double x, double y, double inward, double down) {
    sketch.line({{x + 4 * inward, y}, {x, y}, {x, y + 4 * down}}, 1.5);
}

void draw(Sketch& sketch, Sign sign) {
    switch (sign) {
    case Sign::NewAnimation:
        sketch.line({{9, 2}, {3, 2}, {3, 14}, {13, 14}, {13, 6}, {9, 2}, {9, 6}, {13, 6}}, 1.2);
        return;
    case Sign::Open:
        sketch.line({{2, 13}, {2, 3.5}, {6, 3.5}, {7.5, 5}, {13, 5}, {13, 7}}, 1.2);
        sketch.polygon({{2, 13.5}, {4.5, 7}, {15, 7}, {12.5, 13.5}});
        return;
    case Sign::Save:
        sketch.line({{2.5, 2.5}, {11, 2.5}, {13.5, 5}, {13.5, 13.5}, {2.5, 13.5}, {2.5, 2.5}}, 1.2);
        sketch.box(5, 2.5, 10, 6.3);
        sketch.box(4.8, 9, 11.2, 13.5);
        return;
    case Sign::Parameters:
        slider(sketch, 3.5, 10.5);
        slider(sketch, 8, 5.5);
        slider(sketch, 12.5, 9.5);
        return;
    case Sign::Play:
        sketch.polygon({{4, 2}, {14, 8}, {4, 14}});
        return;
    case Sign::Pause:
        sketch.box(3.5, 2.5, 6.8, 13.5);
        sketch.box(9.2, 2.5, 12.5, 13.5);
        return;
    case Sign::StepBack:
        sketch.polygon({{9, 3}, {2, 8}, {9, 13}});
        sketch.box(10.5, 3, 12.7, 13);
        return;
    case Sign::StepForward:
        sketch.box(3.3, 3, 5.5, 13);
        sketch.polygon({{7, 3}, {14, 8}, {7, 13}});
        return;
    case Sign::First:
        sketch.box(2, 3, 4, 13);
        sketch.polygon({{9, 3}, {4, 8}, {9, 13}});
        sketch.polygon({{14, 3}, {9, 8}, {14, 13}});
        return;
    case Sign::Last:
        sketch.polygon({{2, 3}, {7, 8}, {2, 13}});
        sketch.polygon({{7, 3}, {12, 8}, {7, 13}});
        sketch.box(12, 3, 14, 13);
        return;
    case Sign::ZoomIn:
        lens(sketch);
        sketch.line({{6.5, 4.5}, {6.5, 8.5}}, 1.4);
        return;
    case Sign::ZoomOut:
        lens(sketch);
        return;
    case Sign::ActualSize:
        sketch.line({{2, 5}, {4, 3.5}, {4, 13}}, 1.6);
        sketch.disc(8, 6, 1.1);
        sketch.disc(8, 11, 1.1);
        sketch.line({{11, 5}, {13, 3.5}, {13, 13}}, 1.6);
        return;
    case Sign::Fit:
        corner(sketch, 2.5, 2.5, 1, 1);
        corner(sketch, 13.5, 2.5, -1, 1);
        corner(sketch, 2.5, 13.5, 1, -1);
        corner(sketch, 13.5, 13.5, -1, -1);
        sketch.box(5.5, 5.5, 10.5, 10.5);
        return;
    case Sign::Warning:
        sketch.line({{8, 2}, {14.5, 14}, {1.5, 14}, {8, 2}}, 1.4);
        sketch.line({{8, 6.3}, {8, 9.6}}, 1.6);
        sketch.disc(8, 11.9, 0.95);
        return;
    case Sign::Remember:
        sketch.ring(8, 8, 6.2, 1.4);
        sketch.line({{8, 7.5}, {8, 11.3}}, 1.7);
        sketch.disc(8, 4.9, 1);
        return;
    }
}

} // namespace

Picture drawnSign(Sign sign, int side, Rgb colour) {
    Sketch sketch(side);
    draw(sketch, sign);
    return sketch.finish(side, colour);
}

} // namespace stage
