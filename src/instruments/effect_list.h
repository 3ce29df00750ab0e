// The twenty instruments in the order that the effect list shows: names, control identities and parameter tables.
// The row number is what the setting MainEffect stores, so the order never changes.
// Core: knows no windows; the entries that draw are added in effect_registry.cpp.
#pragma once

#include "settings/parameter.h"

#include <span>
#include <vector>

namespace veldran {

inline constexpr int kEffectCount = 20;

struct EffectRow {
    const char* name;    // as the effect list shows it
    const char* keyStem; // its settings keys begin with this
    int firstControl;    // identities of its controls, both ends included, spinners apart
    int lastControl;
    int spinnerCount;
    std::span<const ParameterRow> parameters;
};

std::span<const EffectRow, kEffectCount> effectRows();

// The identities of the row's labels and controls in order, each number field's spinner right after its field, closed
// by 0.
std::vector<int> controlList(const EffectRow& row);

} // namespace veldran
