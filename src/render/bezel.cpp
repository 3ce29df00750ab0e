// The frame's cross-section, from outside: a dark hairline, a roll that faces outwards, a slightly crowned body, a
// bright lip, a chamfer that faces inwards, a dark gap. Each pixel's place on it comes from its distances to the outer
// and the inner outline, its light from the direction in which its slope faces.
#include "render/bezel.h"

#include "render/painted_shapes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace veldran {
namespace {

struct Vector {
    double x = 0;
    double y = 0;
};

constexpr double kCornerRadius = 1.75; // of the frame

// An outline about the origin: a rectangle whose corners are quarters of an ellipse, which may take all of it.
struct Outline {
    Vector half;   // sides, halved
    Vector corner; // radii

    Outline inset(const Vector& by) const {
        return {{half.x - by.x, half.y - by.y}, {std::max(corner.x - by.x, 0.0), std::max(corner.y - by.y, 0.0)}};
    }
};

// How a point lies to an outline.
struct Relation {
    double distance; // in pixels, positive outside; exact on sides and circles, of first order on other ellipses
    Vector normal;   // outwards, of length 1
};

Relation relationTo(const Outline& outline, const Vector& point) {
    const Vector to{std::abs(point.x) - outline.half.x, std::abs(point.y) - outline.half.y}; // the sides
    const Vector from{to.x + outline.corner.x, to.y + outline.corner.y};                     // the corner's centre
    Vector normal;
    double distance;
    if (from.x > 0 && from.y > 0 && outline.corner.x > 0 && outline.corner.y > 0) {
        const Vector unit{from.x / outline.corner.x, from.y / outline.corner.y};
        const Vector gradient{unit.x / outline.corner.x, unit.y / outline.corner.y};
        const double radius = std::hypot(unit.x, unit.y);
        const double steepness = std::hypot(gradient.x, gradient.y);
        distance = (radius - 1) * radius / steepness;
        normal = {gradient.x / steepness, gradient.y / steepness};
    } else if (to.x > to.y) {
        distance = to.x;
        normal = {1, 0};
    } else {
        distance = to.y;
        normal = {0, 1};
    }
    return {distance, {std::copysign(normal.x, point.x), std::copysign(normal.y, point.y)}};
}

// How much of a pixel lies within an outline that passes its centre at that distance.
double coverage(double distance) {
    return std::clamp(0.5 - distance, 0.0, 1.0);
}

struct Frame {
    Vector picture; // size
    Vector width;   // of the frame
    BezelStyle style;
    Outline outer;

    Frame(int pictureWidth, int pictureHeight, const BezelShape& shape)
        : picture{static_cast<double>(pictureWidth), static_cast<double>(pictureHeight)},
          width{std::clamp<double>(shape.width, 0, picture.x / 2), std::clamp<double>(shape.height, 0, picture.y / 2)},
          style(shape.style), outer{{picture.x / 2, picture.y / 2}, {}} {
        if (style == BezelStyle::Round)
            outer.corner = outer.half;
        else if (style == BezelStyle::RoundedRectangle)
            outer.corner = {std::min(kCornerRadius * width.x, outer.half.x),
                            std::min(kCornerRadius * width.y, outer.half.y)};
    }

    // The middle of a pixel, seen from the middle of the picture.
    Vector place(int x, int y) const { return {x + 0.5 - picture.x / 2, y + 0.5 - picture.y / 2}; }
};

// ---- Light. Tones are fractions: 0 leaves the material's colour, 1 is white, -1 black. Places on the cross-section
// are shares of the frame's thickness. The figures were chosen by eye, on light, dark and coloured materials at 96, 160
// and 256 pixels.

// Towards the light: from above, slightly left. Of length 1.
constexpr Vector kLight{-0.447, -0.894};

// A point of the cross-section.
struct Section {
    double depth;     // pixels from the outer outline
    double thickness; // pixels between the outlines
    Vector normal;    // outwards
};

// How far the surface leans outwards: 1 on the outer edge, -1 on the inner chamfer, nearly flat between.
double lean(double across) {
    const double roll = 1 - smoothStep(0.0, 0.24, across);
    const double crown = 0.10 - 0.20 * smoothStep(0.24, 0.76, across);
    const double chamfer = smoothStep(0.76, 0.82, across);
    return (roll + (1 - roll) * crown) * (1 - chamfer) - 0.85 * chamfer;
}

// A line across the frame at `middle`, at least `pixels` wide.
double line(const Section& at, double middle, double share, double pixels) {
    const double half = std::max(share * at.thickness, pixels) / 2;
    return 1 - smoothStep(half - 0.5, half + 0.5, std::abs(at.depth - middle * at.thickness));
}

// Turned metal reflects its surroundings in uneven sectors: brightest at 11 and 5 o'clock, darkest at 2 and 8.
double turnedMetal(const Vector& normal) {
    const double angle = std::atan2(normal.x, -normal.y); // clockwise from twelve
    const double brightest = -std::numbers::pi / 6;
    const double main = std::cos(2 * (angle - brightest));
    return 0.20 * main * std::abs(main) + 0.07 * std::cos(5 * angle + 0.4) + 0.05 * std::cos(9 * angle + 2.0) - 0.08;
}

// Cast metal and plastic: the highlight in the first eighth from the top, then slowly darker.
double castMetal(double height) {
    return 0.24 * (1 - smoothStep(0.0, 0.12, height)) - 0.05 - 0.16 * smoothStep(0.12, 1.0, height);
}

double toneAt(const Section& at, double body) {
    const double across = at.depth / at.thickness;
    const double facing = at.normal.x * kLight.x + at.normal.y * kLight.y;
    const double slope = lean(across);
    const double lit = slope * facing;
    double tone = (lit > 0 ? 0.62 : 0.72) * lit + body * (1 - std::abs(slope));
    // The roll mirrors the light where it leans half-way towards it.
    const double glint = (slope - 0.55) / 0.22;
    tone += 0.45 * std::pow(std::max(facing, 0.0), 3) * std::exp(-glint * glint) * (across < 0.5 ? 1 : 0);
    const auto cover = [&tone](double weight, double with) { tone += weight * (with - tone); };
    cover(line(at, 0.765, 0.035, 1.0), 0.50 + 0.20 * facing);
    cover(line(at, 0.0, 0.07, 2.0), -0.55 + 0.12 * facing);
    cover(line(at, 1.0, 0.14, 2.0), -0.90);
    return std::clamp(tone, -1.0, 1.0);
}

// Tones of the rectangle's four sides meet in mitres, which are smoothed like any edge.
double rectangleTone(const Frame& frame, const Vector& point, double body) {
    const Section besides{frame.outer.half.x - std::abs(point.x), frame.width.x, {std::copysign(1.0, point.x), 0}};
    const Section above{frame.outer.half.y - std::abs(point.y), frame.width.y, {0, std::copysign(1.0, point.y)}};
    if (frame.width.x <= 0 || frame.width.y <= 0)
        return toneAt(frame.width.x > 0 ? besides : above, body);
    const double apart = besides.depth / besides.thickness - above.depth / above.thickness;
    const double weight = coverage(apart * std::min(frame.width.x, frame.width.y) / std::numbers::sqrt2);
    return weight * toneAt(besides, body) + (1 - weight) * toneAt(above, body);
}

double frameTone(const Frame& frame, const Vector& point, const Relation& outer, const Relation& inner) {
    if (frame.style == BezelStyle::Rectangle)
        return rectangleTone(frame, point, castMetal(0.5 + point.y / frame.picture.y));
    const double depth = std::max(-outer.distance, 0.0);
    const Section at{depth, depth + std::max(inner.distance, 0.0), outer.normal};
    const double body =
        frame.style == BezelStyle::Round ? turnedMetal(outer.normal) : castMetal(0.5 + point.y / frame.picture.y);
    return at.thickness > 0 ? toneAt(at, body) : 0;
}

double shaded(int channel, double tone) {
    return tone > 0 ? channel + (255 - channel) * tone : channel * (1 + tone);
}

} // namespace

Bezel::Bezel(int pictureWidth, int pictureHeight, const BezelShape& shape, Colour base, Colour outside) {
    const Frame frame(pictureWidth, pictureHeight, shape);
    const Outline opening = frame.outer.inset(frame.width);
    const bool open = opening.half.x > 0 && opening.half.y > 0;
    const int baseChannels[3] = {blueOf(base), greenOf(base), redOf(base)};
    const int outsideChannels[3] = {blueOf(outside), greenOf(outside), redOf(outside)};
    for (int y = 0; y < pictureHeight; ++y)
        for (int x = 0; x < pictureWidth; ++x) {
            const Vector point = frame.place(x, y);
            const Relation inner = relationTo(opening, point);
            const long cover = open ? std::lround(255 * (1 - coverage(inner.distance))) : 255;
            if (cover == 0)
                continue;
            const Relation outer = relationTo(frame.outer, point);
            const double solid = coverage(outer.distance);
            const double tone = solid > 0 ? frameTone(frame, point, outer, inner) : 0;
            Pixel pixel{};
            for (int c = 0; c < 3; ++c)
                pixel.channels[c] = static_cast<std::uint8_t>(
                    std::lround(solid * shaded(baseChannels[c], tone) + (1 - solid) * outsideChannels[c]));
            pixel.cover = static_cast<std::uint8_t>(cover);
            pixels_.push_back(pixel);
            if (spans_.empty() || spans_.back().y != y || spans_.back().x + spans_.back().length != x)
                spans_.push_back({x, y, 0});
            ++spans_.back().length;
        }
}

void Bezel::draw(const ImageView& picture) const {
    const Pixel* pixel = pixels_.data();
    for (const Span& span : spans_) {
        std::uint8_t* out = picture.pixel(span.x, span.y);
        for (const Pixel* const end = pixel + span.length; pixel != end; ++pixel, out += 3)
            for (int c = 0; c < 3; ++c)
                out[c] = pixel->cover == 255
                             ? pixel->channels[c]
                             : static_cast<std::uint8_t>(blendChannel(out[c], pixel->channels[c], pixel->cover));
    }
}

void drawBezelMask(const ImageView& mask, const BezelShape& shape) {
    const Frame frame(mask.width, mask.height, shape);
    for (int y = 0; y < mask.height; ++y) {
        std::uint8_t* out = mask.row(y);
        for (int x = 0; x < mask.width; ++x, out += 3)
            std::fill_n(out, 3,
                        static_cast<std::uint8_t>(
                            std::lround(255 * coverage(relationTo(frame.outer, frame.place(x, y)).distance))));
    }
}

} // namespace veldran
