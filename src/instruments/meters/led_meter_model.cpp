// Sums of sizes; and the decibels of a scale.
#include "instruments/meters/led_meter_model.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace veldran {
namespace {

constexpr int kLabels[] = {0, 20, 10, 6, 3, 15, 1}; // the most wanted first
constexpr int kTicks[] = {1, 2, 4, 5, 7, 8, 9, 12, 14, 16, 18, 25, 30};
constexpr int kLeastTickDistance = 4; // output pixels

int sum(const TextSize& text, int TextSize::*side, int gap) {
    return text.*side > 0 ? text.*side + gap : 0;
}

// Half of a length in whole output pixels, so that edges stay sharp when the picture is reduced.
int halfUp(int length, int unit) {
    return (length + 2 * unit - 1) / (2 * unit) * unit;
}

// How far a text that is centred on something reaches beyond it.
int overhang(int text, int thing, int unit) {
    return halfUp(std::max(text - thing, 0), unit);
}

// What a scale takes up across: text, and ticks towards each bank.
int scaleBreadth(const LedMeterShape& shape, int text) {
    return text > 0 ? text + shape.banks * (kLabelledTick + kTextGap) * shape.unit : 0;
}

// From one well's far edge to the next well's near one.
int bankDistance(const LedMeterShape& shape, int scale) {
    return std::max(shape.bankGap, scale > 0 ? scale + 2 * kTextGap * shape.unit : 0);
}

LedStripGeometry stripOf(const LedMeterShape& s, int columnPitch) {
    const int across = s.columns > 1 ? columnPitch : s.ledWidth + 2 * s.edgeX;
    return s.direction == LedDirection::Up
               ? LedStripGeometry{s.direction, s.leds, s.ledDepth, s.ledWidth, s.gapY, s.edgeY, across, s.unit}
               : LedStripGeometry{
                     s.direction, s.leds, s.ledWidth, s.ledDepth, s.gapX, s.edgeX, s.ledDepth + 2 * s.edgeY, s.unit};
}

void layOutUp(const LedMeterShape& s, int wellWidth, int wellHeight, LedMeterLayout& layout) {
    const int gap = kTextGap * s.unit;
    const int scale = scaleBreadth(s, s.scaleText.width);
    const int outerColumn = s.columnText.width > 0 ? layout.columnPitch + 2 * (layout.firstColumn + s.etch) : 0;
    const int beyond =
        std::max(overhang(s.bankText.width, wellWidth, s.unit), overhang(s.columnText.width, outerColumn, s.unit));
    const int left = s.padding + beyond;
    const int top = s.padding + overhang(s.scaleText.height, 2 * (s.etch + s.edgeY), s.unit);
    const int step = std::max(wellWidth + bankDistance(s, scale), wellWidth + 2 * beyond + gap);
    const int bottom = top + wellHeight;
    layout.columnLabelTop = bottom + s.unit;
    const int labelTop = layout.columnLabelTop + layout.columnLabelRows * s.columnText.height;
    for (int bank = 0; bank < s.banks; ++bank) {
        const int x = left + bank * step;
        layout.wells.push_back(rectAt({x, top}, wellWidth, wellHeight));
        layout.labels.push_back(
            rectAt({x + (wellWidth - s.bankText.width) / 2, labelTop}, s.bankText.width, s.bankText.height));
    }
    const int right = layout.wells.back().right;
    const int scaleLeft = s.banks > 1 ? left + wellWidth + halfUp(step - wellWidth - scale, s.unit) : right + gap;
    layout.scale = {scaleLeft, top + s.etch, scaleLeft + scale, bottom - s.etch};
    layout.width = std::max(right + beyond, scale > 0 ? layout.scale.right : 0) + s.padding;
    layout.height = std::max(bottom + overhang(s.scaleText.height, 2 * (s.etch + s.edgeY), s.unit),
                             s.bankText.height > 0 ? labelTop + s.bankText.height : 0) +
                    s.padding;
}

void layOutRight(const LedMeterShape& s, int wellWidth, int wellHeight, LedMeterLayout& layout) {
    const int gap = kTextGap * s.unit;
    const int scale = scaleBreadth(s, s.scaleText.height);
    const int beyond = overhang(s.scaleText.width, 2 * (s.etch + s.edgeX), s.unit);
    const int left = s.padding + std::max(sum(s.bankText, &TextSize::width, gap), beyond);
    const int top = s.padding + overhang(s.bankText.height, wellHeight, s.unit);
    const int step = std::max(wellHeight + bankDistance(s, scale), s.bankText.height);
    for (int bank = 0; bank < s.banks; ++bank) {
        const int y = top + bank * step;
        layout.wells.push_back(rectAt({left, y}, wellWidth, wellHeight));
        layout.labels.push_back(
            rectAt({s.padding, y + (wellHeight - s.bankText.height) / 2}, s.bankText.width, s.bankText.height));
    }
    const int bottom = layout.wells.back().bottom;
    const int scaleTop = s.banks > 1 ? top + wellHeight + halfUp(step - wellHeight - scale, s.unit) : bottom + gap;
    layout.scale = {left + s.etch, scaleTop, left + wellWidth - s.etch, scaleTop + scale};
    layout.width = left + wellWidth + beyond + s.padding;
    layout.height =
        std::max(bottom + overhang(s.bankText.height, wellHeight, s.unit), scale > 0 ? layout.scale.bottom : 0) +
        s.padding;
}

} // namespace

LedMeterLayout ledMeterLayout(const LedMeterShape& shape) {
    LedMeterLayout layout{};
    layout.columnPitch =
        std::max(shape.ledWidth + shape.gapX, halfUp(shape.columnText.width + kTextGap * shape.unit, shape.unit));
    layout.columnLabelRows = layout.columnPitch < shape.columnText.width + kTextGap * shape.unit ? 2 : 1;
    layout.strip = stripOf(shape, layout.columnPitch);
    int inside = layout.strip.width();
    if (shape.columns > 1) {
        layout.firstColumn = std::max(shape.edgeX - halfUp(layout.columnPitch - shape.ledWidth, shape.unit), 0);
        inside = 2 * layout.firstColumn + shape.columns * layout.columnPitch;
    }
    const int wellWidth = inside + 2 * shape.etch;
    const int wellHeight = layout.strip.height() + 2 * shape.etch;
    if (shape.direction == LedDirection::Up)
        layOutUp(shape, wellWidth, wellHeight, layout);
    else
        layOutRight(shape, wellWidth, wellHeight, layout);
    return layout;
}

CanvasPoint columnOrigin(const LedMeterLayout& layout, const LedMeterShape& shape, int bank, int column) {
    const CanvasRect& well = layout.wells[static_cast<std::size_t>(bank)];
    return {well.left + shape.etch + layout.firstColumn + column * layout.columnPitch, well.top + shape.etch};
}

int levelAlong(const LedStripGeometry& strip, double level) {
    return strip.edge + static_cast<int>(std::lround((strip.along() - 2 * strip.edge) * level / 255));
}

std::vector<ScaleMark> scaleMarks(const LedStripGeometry& strip, int textAlong) {
    std::vector<ScaleMark> marks;
    const auto add = [&](int along, int distance, int tick, const std::string& text) {
        if (std::ranges::all_of(marks,
                                [&](const ScaleMark& other) { return std::abs(other.along - along) >= distance; }))
            marks.push_back({along, tick, text});
    };
    const auto place = [&](int decibels) { return levelAlong(strip, 255 * std::pow(10, -decibels / 20.0)); };
    const int textDistance = textAlong + strip.unit;
    for (const int decibels : kLabels)
        add(place(decibels), textDistance, kLabelledTick, std::to_string(decibels));
    add(levelAlong(strip, 0), textDistance, 0, kScaleUnit);
    for (const int decibels : kTicks)
        add(place(decibels), kLeastTickDistance * strip.unit, kPlainTick, "");
    return marks;
}

} // namespace veldran
