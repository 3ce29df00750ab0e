// Rows flow down the first column and then down the second.
#include "ui/windows/panel.h"

#include "instruments/effect_list.h"
#include "settings/windows/settings_store.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <array>
#include <vector>

namespace veldran {
namespace {

// In pixels at 100 % text size.
constexpr int kRowHeight = 24;
constexpr int kControlHeight = 21;
constexpr int kColumnGap = 18;
constexpr int kLabelGap = 8; // between the longest label of a column and the controls

std::vector<BoundParameter> bind(const EffectRow& effect) {
    std::vector<BoundParameter> bound;
    int next = effect.firstControl;
    for (const ParameterRow& row : effect.parameters) {
        const int label = labelsItself(row) ? 0 : next;
        bound.push_back({&row, label, label == 0 ? next : next + 1});
        next += identitiesOf(row);
    }
    return bound;
}

const std::array<std::vector<BoundParameter>, kEffectCount>& panels() {
    static const auto all = [] {
        std::array<std::vector<BoundParameter>, kEffectCount> bound;
        std::ranges::transform(effectRows(), bound.begin(), bind);
        return bound;
    }();
    return all;
}

// How many rows of a column a control takes.
int cellsOf(const BoundParameter& parameter) {
    switch (parameter.row->kind) {
    case ParameterKind::Markers:
        return 5;
    case ParameterKind::Points:
        return 4;
    case ParameterKind::Curve:
        return 2;
    default:
        return 1;
    }
}

struct Column {
    std::span<const BoundParameter> parameters;
    int labelWidth; // of the widest label, with its gap
};

Column makeColumn(HWND dialog, std::span<const BoundParameter> parameters) {
    int widest = 0;
    for (const BoundParameter& parameter : parameters)
        widest = std::max(widest, labelWidthOf(dialog, parameter));
    return {parameters, widest + scaled(kLabelGap)};
}

// Splits a panel where both columns come out about equally high; curves stay together.
std::array<Column, 2> splitIntoColumns(HWND dialog, std::span<const BoundParameter> parameters) {
    int cells = 0;
    for (const BoundParameter& parameter : parameters)
        cells += cellsOf(parameter);
    std::size_t first = 0;
    for (int taken = 0; first < parameters.size() && taken + cellsOf(parameters[first]) <= (cells + 1) / 2; ++first)
        taken += cellsOf(parameters[first]);
    const auto isCurve = [&](std::size_t i) { return parameters[i].row->kind == ParameterKind::Curve; };
    while (first > 0 && first < parameters.size() && isCurve(first) && isCurve(first - 1))
        --first;
    return {makeColumn(dialog, parameters.first(first)), makeColumn(dialog, parameters.subspan(first))};
}

void placeColumn(HWND dialog, const Column& column, int left, int top, int width) {
    for (const BoundParameter& parameter : column.parameters) {
        const int height = scaled((cellsOf(parameter) - 1) * kRowHeight + kControlHeight);
        placeParameter(dialog, parameter, {left, top, left + width, top + height}, column.labelWidth);
        top += scaled(cellsOf(parameter) * kRowHeight);
    }
}

template <class Action>
void forEachParameter(Action action) {
    for (const std::vector<BoundParameter>& panel : panels())
        std::ranges::for_each(panel, action);
}

} // namespace

std::span<const BoundParameter> panelOf(int effect) {
    return panels()[static_cast<std::size_t>(std::clamp(effect, 0, kEffectCount - 1))];
}

std::optional<BoundParameter> parameterOfControl(int control) {
    for (const std::vector<BoundParameter>& panel : panels())
        for (const BoundParameter& parameter : panel)
            if (parameter.control == control ||
                (parameter.row->kind == ParameterKind::PlayableSound && parameter.playButton() == control))
                return parameter;
    return std::nullopt;
}

void createPanels(HWND dialog) {
    forEachParameter(
        [dialog](const BoundParameter& parameter) { createParameter(dialog, parameter, InitialVisibility::Hidden); });
}

void placePanel(HWND dialog, int effect, const RECT& area) {
    const int width = (area.right - area.left - scaled(kColumnGap)) / 2;
    const std::array<Column, 2> columns = splitIntoColumns(dialog, panelOf(effect));
    placeColumn(dialog, columns[0], area.left, area.top, width);
    placeColumn(dialog, columns[1], area.right - width, area.top, width);
}

void fillPanels(HWND dialog) {
    forEachParameter([dialog](const BoundParameter& parameter) { fillParameter(dialog, parameter, pluginSettings()); });
}

void savePanels(HWND dialog) {
    forEachParameter([dialog](const BoundParameter& parameter) { saveParameter(dialog, parameter); });
}

void resetPanel(HWND dialog, int effect, std::uint32_t hostFlags) {
    for (const BoundParameter& parameter : panelOf(effect))
        resetParameter(dialog, parameter, hostFlags);
}

} // namespace veldran
