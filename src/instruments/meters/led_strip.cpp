// All LEDs of a strip are painted in each state, and a frame takes from each picture the cells that are in that state.
// A cell reaches from the middle of one gap to the middle of the next.
#include "instruments/meters/led_strip.h"

#include "render/layers.h"
#include "render/painted_shapes.h"

#include <algorithm>
#include <cmath>

namespace veldran {
namespace {

// Light: 0 is the colour itself, 1 white.
constexpr double kCoreLight[] = {0.3, 0.6, 0.75}; // in the middle of a lit LED, by shape
constexpr double kDarkRim = 0.45;                 // shade at the edge of one that is off
constexpr double kReflex = 0.14;                  // light on its upper part
constexpr double kHaloOpacity = 0.4;              // at the edge of an LED that shines
constexpr int kFadingWeight = 110;                // of 255: what is left of the light a frame later

ShapeBox shapeBox(const CanvasRect& r) {
    return {static_cast<double>(r.left), static_cast<double>(r.top), static_cast<double>(r.right),
            static_cast<double>(r.bottom)};
}

double shorterHalf(const ShapeBox& box) {
    return std::min(box.right - box.left, box.bottom - box.top) / 2;
}

double cornerRadius(LedShape shape, const ShapeBox& box) {
    const double half = shorterHalf(box);
    return shape == LedShape::Plain ? 0 : shape == LedShape::Round ? half : half / 2;
}

} // namespace

int litLeds(int level, int leds) {
    return std::clamp((2 * level * leds + 255) / 510, 0, leds);
}

LedStrip::LedStrip(const LedStripGeometry& geometry, const LedLook& look) : geometry_(geometry), look_(look) {
    dark_ = paint(State::Dark);
    lit_ = paint(State::Lit);
    if (look.incandescent)
        fading_ = paint(State::Fading);
    if (shines())
        besideLit_ = paint(State::BesideLit);
}

bool LedStrip::shines() const {
    return look_.incandescent || look_.shape == LedShape::Tube;
}

StoredPicture LedStrip::paint(State state) const {
    const int width = geometry_.width();
    const int height = geometry_.height();
    StoredPicture picture(width, height);
    paintBox(picture.view, shapeBox({0, 0, width, height}), 0, Edges::Hard,
             [&](double, double) { return Paint{look_.floor}; });
    if (shines() && state == State::Lit)
        for (int i = 0; i < geometry_.leds; ++i)
            paintHalo(picture.view, i, 0, geometry_.leds);
    for (int i = 0; i < geometry_.leds; ++i)
        paintLed(picture.view, i, state);
    if (state == State::BesideLit)
        for (int i = 0; i + 1 < geometry_.leds; ++i)
            paintHalo(picture.view, i, i + 1, i + 2);
    return picture;
}

void LedStrip::paintLed(const ImageView& picture, int index, State state) const {
    const bool burns = state == State::Lit || state == State::Fading;
    if (!burns && !look_.showDark)
        return;
    const ShapeBox box = shapeBox(ledBox(index));
    const double radius = cornerRadius(look_.shape, box);
    const double half = shorterHalf(box);
    const Colour colour = colourOf(index);
    const Colour off = look_.showDark ? scaleColour(colour, look_.darkPercent / 100.0) : look_.floor;
    const double core = kCoreLight[static_cast<int>(look_.shape)];
    paintBox(picture, box, radius, Edges::Smooth, [&](double x, double y) {
        const double depth = std::clamp(-distanceToBox(box, radius, x, y) / half, 0.0, 1.0);
        const Colour on = tonedColour(colour, core * depth * depth);
        const bool upper = 3 * (y - box.top) < box.bottom - box.top;
        const double rim = (1 - depth) * (1 - depth);
        const Colour dark = tonedColour(off, look_.showDark ? (upper ? kReflex * depth : 0) - kDarkRim * rim : 0);
        return Paint{state == State::Lit ? on : state == State::Fading ? mixColours(dark, on, kFadingWeight) : dark};
    });
}

// The light that an LED throws on the cells from `firstCell` to before `endCell`; as strong as it is wide at its edge,
// and gone at twice the radius.
void LedStrip::paintHalo(const ImageView& picture, int index, int firstCell, int endCell) const {
    const ShapeBox box = shapeBox(ledBox(index));
    const double radius = cornerRadius(look_.shape, box);
    const double reach = std::max(shorterHalf(box), 2.0 * geometry_.unit);
    const ShapeBox wide = box.inset(-reach);
    const ShapeBox shown = shapeBox(cells(firstCell, endCell));
    const ShapeBox area{std::max(wide.left, shown.left), std::max(wide.top, shown.top),
                        std::min(wide.right, shown.right), std::min(wide.bottom, shown.bottom)};
    const auto outside = [&](double x, double y) { return std::max(distanceToBox(box, radius, x, y), 0.0) / reach; };
    const Colour colour = colourOf(index);
    paintShape(
        picture, area, Edges::Hard, [&](double x, double y) { return outside(x, y) - 1; },
        [&](double x, double y) {
            const double left = std::max(1 - outside(x, y), 0.0);
            return Paint{colour, kHaloOpacity * left * left};
        });
}

Colour LedStrip::colourOf(int index) const {
    // An LED has the colour of the lowest whole level that lights it.
    const auto reaches = [&](int level) { return (2 * index + 1) * 255 > 2 * geometry_.leds * (level - 1); };
    return reaches(look_.redLevel) ? look_.red : reaches(look_.yellowLevel) ? look_.yellow : look_.green;
}

int LedStrip::cellStart(int index) const {
    if (index <= 0)
        return 0;
    if (index >= geometry_.leds)
        return geometry_.along();
    return geometry_.edge + index * (geometry_.ledAlong + geometry_.gap) - geometry_.gap / 2;
}

CanvasRect LedStrip::cells(int first, int end) const {
    const int from = cellStart(first);
    const int to = cellStart(end);
    if (geometry_.direction == LedDirection::Right)
        return {from, 0, to, geometry_.across};
    return {0, geometry_.along() - to, geometry_.across, geometry_.along() - from};
}

CanvasRect LedStrip::ledBox(int index) const {
    const int from = geometry_.edge + index * (geometry_.ledAlong + geometry_.gap);
    const int aside = (geometry_.across - geometry_.ledAcross) / (2 * geometry_.unit) * geometry_.unit;
    if (geometry_.direction == LedDirection::Right)
        return rectAt({from, aside}, geometry_.ledAlong, geometry_.ledAcross);
    return rectAt({aside, geometry_.along() - from - geometry_.ledAlong}, geometry_.ledAcross, geometry_.ledAlong);
}

void LedStrip::copyCells(const ImageView& picture, CanvasPoint at, const StoredPicture& from, int first,
                         int end) const {
    const CanvasRect part = cells(first, end);
    layImage(picture, cropped(from.view, part.left, part.top, part.right, part.bottom), at.x + part.left,
             at.y + part.top);
}

void LedStrip::draw(const ImageView& picture, CanvasPoint at, int lit, int fading) const {
    copyCells(picture, at, lit_, 0, lit);
    const int warm = look_.incandescent ? std::max(lit, fading) : lit;
    if (warm > lit)
        copyCells(picture, at, fading_, lit, warm);
    int dark = warm;
    if (shines() && warm == lit && lit > 0 && lit < geometry_.leds)
        copyCells(picture, at, besideLit_, lit, ++dark);
    copyCells(picture, at, dark_, dark, geometry_.leds);
}

} // namespace veldran
