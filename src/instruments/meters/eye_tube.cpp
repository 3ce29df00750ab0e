// Light comes from two sides, and each has its edge at the shadow: where neither falls the cone is dark, where both do
// it is doubly bright. Measures are shares of the bezel's radius; figures without another source were chosen by eye at
// 96, 160 and 256 pixels.
#include "instruments/meters/eye_tube.h"

#include "render/bezel.h"
#include "render/layers.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace veldran {
namespace {

constexpr double kWidestShadow = 50; // degrees to either side: silent tubes have a right angle and a little more
constexpr double kOverlap = 8;       // degrees that either side reaches beyond the middle at full scale

constexpr Colour kBezelColour = makeColour(126, 122, 112); // nickel
constexpr Colour kCapColour = makeColour(26, 28, 27);
constexpr int kBezelPercent = 8; // of the diameter

constexpr double kGlassRadius = 0.84; // the bezel's opening
constexpr double kConeRadius = 0.75;
constexpr double kCapRadius = 0.25;
constexpr double kCapShade = 0.035;  // width of the dark ring around the cap
constexpr double kEdgeWidth = 0.022; // of the shadow's edges, half
constexpr double kSupportWidth = 0.014;
constexpr double kSupportShade = 0.45;

constexpr double kTubeShade = 0.05;    // of the glow's colour, where nothing shines
constexpr double kWeakGlow = 0.15;     // of the cone in the shadow
constexpr double kDoubleGlow = 1.45;   // where light falls twice
constexpr double kWhitest = 0.55;      // how white the brightest light is
constexpr double kWallLight = 0.42;    // on the glass beside the cone
constexpr double kCapLight = 0.5;      // on the cap's edge
constexpr double kReflexLight = 0.18;  // of the glass, on top
constexpr double kReflexBottom = 0.01; // and where it ends

// A place about the tube's middle, in shares of its radius, y downwards.
struct Place {
    double x;
    double y;

    double radius() const { return std::hypot(x, y); }
    // From the bottom, where the shadow is; positive to the right.
    double angle() const { return std::atan2(x, y); }
};

struct Disc {
    double middle; // pixels, on both axes
    double scale;  // pixels, the radius

    explicit Disc(int diameter) : middle(diameter / 2.0), scale(diameter / 2.0) {}
    Place at(double x, double y) const { return {(x - middle) / scale, (y - middle) / scale}; }
};

// The light of one side: none up to its edge, all beyond. `distance` is measured in halves of the edge's width.
float lightBeyond(float distance) {
    return smoothStep(-1.0f, 1.0f, distance);
}

// 0 to 2 at an angle from the shadow's middle, for a shadow of that half width.
float lightAt(float angle, float sharpness, float shadow) {
    return lightBeyond((angle - shadow) * sharpness) + lightBeyond((-angle - shadow) * sharpness);
}

// How far the shadow reaches to either side of its middle; negative where the light of both sides overlaps.
float shadowRadians(int level) {
    return static_cast<float>((kWidestShadow - (kWidestShadow + kOverlap) * level / 255) * std::numbers::pi / 180);
}

// What the glow's colour looks like at some brightness: 1 is the colour itself, more turns white.
Colour phosphor(Colour glow, double brightness) {
    if (brightness <= 1)
        return scaleColour(glow, std::max(brightness, kTubeShade));
    return tonedColour(glow, std::min(brightness - 1, 1.0) * kWhitest);
}

// How bright the cone is from the cap to its rim: a little brighter where the electrons fall steeply.
double coneBrightness(double radius) {
    const double part = (radius - kCapRadius) / (kConeRadius - kCapRadius);
    const double crown = 1.12 - 0.42 * smoothStep(0.15, 1.0, part);
    const double shade = smoothStep(kCapRadius, kCapRadius + kCapShade, radius);
    const double rim = 1 - 0.5 * smoothStep(0.95, 1.0, part);
    return crown * shade * rim;
}

// What the two wires that hold the cap leave of the light.
double besideSupports(const Place& place) {
    const double off = place.y / kSupportWidth;
    return 1 - kSupportShade * std::exp(-off * off);
}

double brightnessAt(const Place& place, double light) {
    const double radius = place.radius();
    if (radius < kConeRadius) {
        const double shone = light <= 1 ? kWeakGlow + (1 - kWeakGlow) * light : 1 + (kDoubleGlow - 1) * (light - 1);
        return coneBrightness(radius) * besideSupports(place) * shone;
    }
    const double away = (radius - kConeRadius) / (kGlassRadius - kConeRadius);
    return kTubeShade + kWallLight * light * (1 - away) * (1 - away);
}

} // namespace

EyeTube::EyeTube(int diameter, const EyeLook& look)
    : diameter_(diameter), look_(look), dark_(diameter, diameter), lit_(diameter, diameter),
      doubled_(diameter, diameter) {
    const int width = std::max(diameter * kBezelPercent / 100, 1);
    const Bezel bezel(diameter, diameter, {BezelStyle::Round, width, width}, kBezelColour, look.panel);
    for (const auto& [picture, light] : {std::pair(&dark_, 0), std::pair(&lit_, 1), std::pair(&doubled_, 2)}) {
        paintPhosphor(picture->view, light);
        paintCap(picture->view, light);
        paintReflex(picture->view);
        bezel.draw(picture->view);
    }
    findMovingPixels();
}

void EyeTube::paintPhosphor(const ImageView& picture, double light) const {
    const Disc disc(diameter_);
    const ShapeBox all{0, 0, double(diameter_), double(diameter_)};
    paintBox(picture, all, 0, Edges::Hard,
             [&](double x, double y) { return Paint{phosphor(look_.glow, brightnessAt(disc.at(x, y), light))}; });
}

// A dark dome with the window's light on its upper left and the cone's around its edge.
void EyeTube::paintCap(const ImageView& picture, double light) const {
    const Disc disc(diameter_);
    const double radius = kCapRadius * disc.scale;
    const ShapeBox box{disc.middle - radius, disc.middle - radius, disc.middle + radius, disc.middle + radius};
    paintBox(picture, box, radius, look_.edges, [&](double x, double y) {
        const Place place = disc.at(x, y);
        const double across = place.radius() / kCapRadius;
        const double high = std::hypot(place.x / kCapRadius + 0.3, place.y / kCapRadius + 0.45);
        const double tone = 0.34 * std::exp(-7 * high * high) + 0.07 - 0.5 * smoothStep(0.2, 1.0, across);
        const double edge = smoothStep(0.72, 1.0, across);
        return Paint{mixColours(tonedColour(kCapColour, tone), look_.glow,
                                static_cast<int>(255 * kCapLight * std::min(light, 1.0) * edge * edge * edge))};
    });
}

// The sky in the glass dome, down to a border that is bowed like the dome.
void EyeTube::paintReflex(const ImageView& picture) const {
    const Disc disc(diameter_);
    constexpr double kReflexRadius = 0.78;
    const auto border = [](double x) { return -0.16 - 0.34 * x * x; };
    const double radius = kReflexRadius * disc.scale;
    const ShapeBox box{disc.middle - radius, disc.middle - radius, disc.middle + radius, disc.middle};
    paintShape(
        picture, box, look_.edges,
        [&](double x, double y) {
            const Place place = disc.at(x, y);
            return disc.scale * std::max(place.radius() - kReflexRadius, place.y - border(place.x));
        },
        [&](double x, double y) {
            const Place place = disc.at(x, y);
            const double down = std::clamp((place.y + kReflexRadius) / (border(place.x) + kReflexRadius), 0.0, 1.0);
            return Paint{0xFFFFFF, kReflexLight + (kReflexBottom - kReflexLight) * down};
        });
}

void EyeTube::findMovingPixels() {
    const Disc disc(diameter_);
    const float widest = shadowRadians(0);
    const float closed = shadowRadians(255);
    for (int y = 0; y < diameter_; ++y)
        for (int x = 0; x < diameter_; ++x) {
            const Place place = disc.at(x + 0.5, y + 0.5);
            const double radius = place.radius();
            // Light that has left the cone spreads.
            const double edge = kEdgeWidth + 1.2 * std::max(radius - kConeRadius, 0.0);
            const MovingPixel pixel{x, y, static_cast<float>(place.angle()), static_cast<float>(radius / edge)};
            if (radius < kGlassRadius && (lightAt(pixel.angle, pixel.sharpness, widest) != 1 ||
                                          lightAt(pixel.angle, pixel.sharpness, closed) != 1))
                moving_.push_back(pixel);
        }
}

void EyeTube::drawLit(const ImageView& picture, CanvasPoint at) const {
    layImage(picture, lit_.view, at.x, at.y);
}

void EyeTube::drawShadow(const ImageView& picture, CanvasPoint at, int level) const {
    const float shadow = shadowRadians(level);
    for (const MovingPixel& pixel : moving_) {
        const float light = lightAt(pixel.angle, pixel.sharpness, shadow);
        const bool twice = light > 1;
        const std::uint8_t* under = (twice ? lit_ : dark_).view.pixel(pixel.x, pixel.y);
        const std::uint8_t* over = (twice ? doubled_ : lit_).view.pixel(pixel.x, pixel.y);
        const int weight = static_cast<int>(255 * (twice ? light - 1 : light) + 0.5f);
        std::uint8_t* out = picture.pixel(at.x + pixel.x, at.y + pixel.y);
        for (int c = 0; c < 3; ++c)
            out[c] = static_cast<std::uint8_t>(divideBy255(over[c] * weight + under[c] * (255 - weight)));
    }
}

void EyeTube::drawOutline(const ImageView& mask, CanvasPoint at) const {
    drawBezelMask(cropped(mask, at.x, at.y, at.x + diameter_, at.y + diameter_), {BezelStyle::Round, 0, 0});
}

} // namespace veldran
