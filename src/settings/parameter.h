// Parameters as data: one row describes one control of a panel and the setting that it edits. Control identities,
// layout, filling, saving and reading all follow from the rows. Core: knows no windows.
#pragma once

#include "settings/settings_table.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace veldran {

enum class ParameterKind : std::uint8_t {
    Colour,        // swatch, 0x00BBGGRR
    SessionColour, // swatch without a setting: kept as long as the process
    Number,        // field with a spinner
    Check,         // check box
    Choice,        // list; the setting holds the position of the chosen entry
    Sound,         // path of a sound
    PlayableSound, // the same with a button that plays it
    TextFile,      // path of a text
    ImageFile,     // path of an image
    Points,        // data points, edited as a curve
    Markers,       // list of lines; `choices` holds the lines that stand there at first
    Curve,         // colour curve of five points, drawn with its label
};

struct ParameterRow {
    ParameterKind kind;
    const char* label;
    Setting setting;
    const char* range;   // Number: "minimum,maximum,default"
    const char* choices; // Choice, Markers: entries separated by ";"
};

// Instrument controls have these identities; a spinner has its field's identity plus kSpinnerOffset and carries the
// field's range as its window text.
inline constexpr int kFirstInstrumentControl = 100;
inline constexpr int kLastInstrumentControl = 670;
inline constexpr int kSpinnerOffset = 10000;

// The entries of a list of degrees per frame, for instruments that turn.
inline constexpr char kPhaseIncrements[] =
    "-60;-45;-40;-30;-24;-20;-15;-12;-10;-9;-8;-6;-5;-4;-3;-2;-1;1;2;3;4;5;6;8;9;10;12;15;20;24;30;40;45;60";

// The channels of a sound that an instrument shows.
inline constexpr char kSoundChannels[] = "Stereo;Left;Right;Mono";

// Whether a control carries its label itself and so has no identity for one.
constexpr bool labelsItself(const ParameterRow& row) {
    return row.kind == ParameterKind::Check || row.kind == ParameterKind::Curve;
}

// How many identities a row takes: a label, the control, and the button that plays a sound.
constexpr int identitiesOf(const ParameterRow& row) {
    return (labelsItself(row) ? 1 : 2) + (row.kind == ParameterKind::PlayableSound ? 1 : 0);
}

// The identities that all rows take together, spinners apart.
constexpr int identitiesOf(std::span<const ParameterRow> rows) {
    int count = 0;
    for (const ParameterRow& row : rows)
        count += identitiesOf(row);
    return count;
}

constexpr int spinnersOf(std::span<const ParameterRow> rows) {
    int count = 0;
    for (const ParameterRow& row : rows)
        count += row.kind == ParameterKind::Number ? 1 : 0;
    return count;
}

// The identity of the control that edits row `index`, when the identities are given out in order from `first` on: label
// first, control after it.
constexpr int controlOfRow(std::span<const ParameterRow> rows, int first, std::size_t index) {
    return first + identitiesOf(rows.subspan(0, index)) + (labelsItself(rows[index]) ? 0 : 1);
}

// The identity of the control that edits `setting`; 0 when no row does.
constexpr int controlOf(std::span<const ParameterRow> rows, int first, Setting setting) {
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].setting == setting)
            return controlOfRow(rows, first, i);
    return 0;
}

// The identity of the first control of a kind; 0 when there is none.
constexpr int controlOf(std::span<const ParameterRow> rows, int first, ParameterKind kind) {
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].kind == kind)
            return controlOfRow(rows, first, i);
    return 0;
}

// The control of a setting on a panel; does not compile for a setting that has none there.
template <const auto& kRows, int kFirst, Setting kSetting>
inline constexpr int kControlOf = [] {
    constexpr int control = controlOf(kRows, kFirst, kSetting);
    static_assert(control != 0);
    return control;
}();

struct NumberRange {
    int minimum;
    int maximum;
};

// Parses "minimum,maximum,default". What cannot be read keeps the value of a field without a spinner: 0 to 100.
NumberRange parseRange(const char* text);

// The integer that a field's text begins with, after blanks; a sign counts only where the range reaches below 0. 0 when
// no integer stands there; what is too large for the type is kept at its nearest.
std::int64_t fieldInteger(std::string_view text, NumberRange range);

// The value of a number field whose text, read as an integer, is `value`: clamped to the range. `value` is wider than
// the range's type because a field may hold any unsigned 32-bit number.
int clampToRange(std::int64_t value, NumberRange range);

} // namespace veldran
