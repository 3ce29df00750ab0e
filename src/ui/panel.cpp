// Rows flow down the first column and then down the second.
#include "ui/panel.h"

#include "instruments/effect_list.h"
#include "ui/parameter_control.h"

#include <vector>

namespace veldran {
namespace {

constexpr int kRowHeight = 24;
constexpr int kControlHeight = 21;
constexpr int kColumnGap = 18;
constexpr int kLabelWidth = 84;
constexpr int kListCells = 5; // a list takes as much room as so many fields

std::vector<BoundParameter> bind(const EffectRow& effect) {
    std::vector<BoundParameter> bound;
    int next = effect.firstControl;
    for (const ParameterRow& row : effect.parameters) {
        const int identities = identitiesOf(row);
        bound.push_back({&row, identities == 2 ? next : 0, next + identities - 1});
        next += identities;
    }
    return bound;
}

int cellsOf(const BoundParameter& parameter) {
    return parameter.row->kind == ParameterKind::Markers ? kListCells : 1;
}

template <class Action>
void forEachParameter(Action action) {
    for (const EffectRow& effect : effectRows())
        for (const BoundParameter& parameter : bind(effect))
            action(parameter);
}

void placePanel(HWND dialog, const std::vector<BoundParameter>& parameters, const RECT& area) {
    int cells = 0;
    for (const BoundParameter& parameter : parameters)
        cells += cellsOf(parameter);
    const int columnCells = (cells + 1) / 2;
    const int columnWidth = (area.right - area.left - kColumnGap) / 2;
    int column = 0;
    int cell = 0;
    for (const BoundParameter& parameter : parameters) {
        if (column == 0 && cell > 0 && cell + cellsOf(parameter) > columnCells) {
            column = 1;
            cell = 0;
        }
        RECT box{};
        box.left = area.left + column * (columnWidth + kColumnGap);
        box.top = area.top + cell * kRowHeight;
        box.right = box.left + columnWidth;
        box.bottom = box.top + (cellsOf(parameter) - 1) * kRowHeight + kControlHeight;
        placeParameter(dialog, parameter, box, kLabelWidth);
        cell += cellsOf(parameter);
    }
}

} // namespace

void createPanels(HWND dialog) {
    forEachParameter(
        [dialog](const BoundParameter& parameter) { createParameter(dialog, parameter, InitialVisibility::Hidden); });
}

void placePanels(HWND dialog, const RECT& area) {
    for (const EffectRow& effect : effectRows())
        placePanel(dialog, bind(effect), area);
}

void fillPanels(HWND dialog) {
    forEachParameter([dialog](const BoundParameter& parameter) { fillParameter(dialog, parameter); });
}

void savePanels(HWND dialog) {
    forEachParameter([dialog](const BoundParameter& parameter) { saveParameter(dialog, parameter); });
}

} // namespace veldran
