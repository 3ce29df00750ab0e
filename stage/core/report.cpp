// Texts for people; see the header.
#include "core/report.h"

#include "core/setting_value.h"
#include "core/settings_text.h"

#include <algorithm>
#include <cstdio>

namespace stage {
namespace {

void appendPadded(std::string& text, std::string_view word, std::size_t width) {
    text += word;
    text.append(word.size() < width ? width - word.size() : 1, ' ');
}

void appendSetting(std::string& text, const Setting& setting) {
    constexpr std::size_t kKeyWidth = 36;
    constexpr std::size_t kKindWidth = 9;
    constexpr std::size_t kDefaultWidth = 10;
    text += "    ";
    appendPadded(text, setting.key, kKeyWidth);
    appendPadded(text, kindName(setting.kind), kKindWidth);
    std::string shown = shownValue(setting, setting.defaultValue);
    const bool isText = setting.kind == SettingKind::Text || setting.kind == SettingKind::File;
    if (isText)
        shown = "\"" + shown + "\"";
    appendPadded(text, shown, kDefaultWidth);
    if (setting.kind == SettingKind::Integer || setting.kind == SettingKind::Choice)
        text += allowedValues(setting) + "  ";
    text += setting.label;
    while (text.ends_with(' '))
        text.pop_back();
    text += '\n';
}

void appendSettingsOf(std::string& text, const EffectCatalog& catalog, std::optional<std::uint32_t> owner) {
    for (const Setting& setting : catalog.settings())
        if (setting.owner == owner && setting.key != kEffectKey) // which is given with --effect
            appendSetting(text, setting);
}

template <class... Values>
std::string formatted(const char* format, Values... values) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), format, values...);
    return buffer;
}

} // namespace

std::string listText(const EffectCatalog& catalog) {
    std::string text = "Effects, each with its settings: key, kind, default, what is allowed, label\n";
    for (const Effect& effect : catalog.effects()) {
        text += formatted("\n%2u  ", effect.row) + effect.name;
        text += effect.state == EffectState::Planned ? "  (planned)\n" : "\n";
        appendSettingsOf(text, catalog, effect.row);
    }
    text += "\nOptions of every effect\n";
    appendSettingsOf(text, catalog, std::nullopt);
    return text;
}

std::string summaryText(const Recording& recording, std::uint32_t delaysPerSecond, double secondsTaken) {
    const double seconds = static_cast<double>(recording.duration) / delaysPerSecond;
    return "file      " + recording.file + "\nframes    " + std::to_string(recording.frames) + "\nsize      " +
           std::to_string(recording.width) + "x" + std::to_string(recording.height) + "\nbytes     " +
           std::to_string(recording.bytes) + "\nduration  " + formatted("%.2f s", seconds) + "\ntaken     " +
           formatted("%.2f s", secondsTaken) + "\n";
}

std::string ProgressText::redraw(const std::string& line) {
    if (line == shown_)
        return {};
    std::string text = "\r" + line;
    if (shown_.size() > line.size())
        text.append(shown_.size() - line.size(), ' ');
    shown_ = line;
    return text;
}

std::string ProgressText::showStatus(const std::string& status) {
    if (status == status_)
        return {};
    status_ = status;
    return style_ == ProgressStyle::PlainLines ? status + "\n" : redraw(status);
}

std::string ProgressText::showProgress(std::uint64_t done, std::uint64_t total) {
    constexpr std::size_t kBarWidth = 30;
    if (style_ == ProgressStyle::PlainLines)
        return {};
    if (total == 0)
        return redraw(status_);
    const double share = static_cast<double>(std::min(done, total)) / static_cast<double>(total);
    const auto marks = static_cast<std::size_t>(share * kBarWidth);
    return redraw(formatted("%-16s", status_.substr(0, 16).c_str()) + "[" + std::string(marks, '#') +
                  std::string(kBarWidth - marks, '.') + formatted("] %3d %%", static_cast<int>(share * 100)));
}

std::string ProgressText::clear() {
    if (shown_.empty())
        return {};
    return redraw("") + "\r";
}

} // namespace stage
