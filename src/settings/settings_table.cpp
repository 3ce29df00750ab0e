// The rows of the settings table, made from the same list as the names in the header.
#include "settings/settings_table.h"

namespace veldran {
namespace {

constexpr std::array<SettingRow, kSettingCount> kRows = {{
#define ROW_FLAG(key, value) {#key, kSettingFlag, 0, value, "", Setting::key},
#define ROW_INTEGER(key, value) {#key, kSettingInteger, 0, value, "", Setting::key},
#define ROW_TEXT(key, value) {#key, kSettingText, 0, 0, value, Setting::key},
#define ROW_MARKED_FLAG(key, value, extra) {#key, kSettingFlag | kSettingMarked, extra, value, "", Setting::key},
#define ROW_STAMP(key, value) {#key, kSettingInteger | kSettingWriteOnly, 0, value, "", Setting::key},
#define ROW_SHARED(key, storage, kind) {#key, kSetting##kind, 0, 0, "", Setting::storage},
#define ROW_AGAIN(key) {#key, kSettingFlag, 0, 0, "", Setting::key},
#include "settings/settings_keys.inc"
#undef ROW_FLAG
#undef ROW_INTEGER
#undef ROW_TEXT
#undef ROW_MARKED_FLAG
#undef ROW_STAMP
#undef ROW_SHARED
#undef ROW_AGAIN
}};

} // namespace

std::span<const SettingRow, kSettingCount> settingRows() {
    return kRows;
}

const SettingRow& settingRow(Setting setting) {
    return kRows[static_cast<std::size_t>(setting)];
}

void PlugInSettings::reset() {
    for (std::size_t i = 0; i < kSettingCount; ++i) {
        const SettingRow& storage = settingRow(kRows[i].storage);
        numbers_[i] = storage.number;
        texts_[i] = storage.text;
    }
}

} // namespace veldran
