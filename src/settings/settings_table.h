// The persistent settings: one table of rows in file order, and the record of values that the rows describe.
// Core: knows neither files nor windows, and keeps no process-wide state.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace veldran {

// A setting is named by its row. The second row of a key that stands twice has the suffix "Again".
enum class Setting : std::uint16_t {
#define ROW_FLAG(key, value) key,
#define ROW_INTEGER(key, value) key,
#define ROW_TEXT(key, value) key,
#define ROW_MARKED_FLAG(key, value, extra) key,
#define ROW_STAMP(key, value) key,
#define ROW_SHARED(key, storage, kind) key,
#define ROW_AGAIN(key) key##Again,
#include "settings/settings_keys.inc"
#undef ROW_FLAG
#undef ROW_INTEGER
#undef ROW_TEXT
#undef ROW_MARKED_FLAG
#undef ROW_STAMP
#undef ROW_SHARED
#undef ROW_AGAIN
    None // for controls without a setting
};

inline constexpr std::size_t kSettingCount = static_cast<std::size_t>(Setting::None);

// Bits of SettingRow::kind. Exactly one of the first three is set.
enum SettingKind : std::uint32_t {
    kSettingFlag = 1,          // a number that a check box edits: 0 or 1
    kSettingText = 2,          // at most kTextLimit bytes
    kSettingInteger = 4,       // unsigned, 32 bits
    kSettingWriteOnly = 0x100, // written to the file, never read back
    kSettingMarked = 0x8000,   // rows that carry a number in `extra`
};

inline constexpr std::size_t kTextLimit = 260; // bytes, without the terminating NUL

struct SettingRow {
    const char* key;
    std::uint32_t kind;   // SettingKind bits
    std::uint32_t extra;  // meaningful to nobody but its bearer
    std::uint32_t number; // built-in default of a flag or an integer
    const char* text;     // built-in default of a text
    Setting storage;      // the row whose value this row reads and writes; mostly the row itself

    bool isText() const { return (kind & kSettingText) != 0; }
    bool isReadable() const { return (kind & kSettingWriteOnly) == 0; }
};

std::span<const SettingRow, kSettingCount> settingRows();
const SettingRow& settingRow(Setting setting);

// The values. A fresh record holds the built-in defaults.
class PlugInSettings {
public:
    PlugInSettings() { reset(); }

    void reset();

    std::uint32_t number(Setting setting) const { return numbers_[slot(setting)]; }
    void setNumber(Setting setting, std::uint32_t value) { numbers_[slot(setting)] = value; }

    const std::string& text(Setting setting) const { return texts_[slot(setting)]; }
    // Keeps the first kTextLimit bytes.
    void setText(Setting setting, std::string_view value) { texts_[slot(setting)] = value.substr(0, kTextLimit); }

private:
    static std::size_t slot(Setting setting) { return static_cast<std::size_t>(settingRow(setting).storage); }

    std::array<std::uint32_t, kSettingCount> numbers_{};
    std::array<std::string, kSettingCount> texts_{};
};

} // namespace veldran
