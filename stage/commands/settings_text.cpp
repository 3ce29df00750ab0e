// Composing and reading back the private configuration file; see the header.
#include "commands/settings_text.h"

#include "base/failure.h"
#include "base/text.h"

#include <algorithm>

namespace stage {
namespace {

constexpr char kEndOfTextFile = 0x1A;
// Notes to the plugin's reader, which passes over them.
constexpr std::string_view kForGif = "; delays in hundredths of a second";
constexpr std::string_view kForPng = "; delays in milliseconds";

struct Line {
    std::string_view key;
    std::string_view value;
};

// As the plugin takes a line apart.
Line partsOf(std::string_view line) {
    line = line.substr(0, line.find('\r'));
    const std::size_t end = std::min(line.find_first_of(" =\t"), line.size());
    Line parts{line.substr(0, end), line.substr(end)};
    parts.value.remove_prefix(std::min(parts.value.find_first_not_of(" ="), parts.value.size()));
    return parts;
}

} // namespace

std::string composeSettings(std::string_view iniText, std::span<const KeyValue> settings, std::uint32_t effectRow) {
    if (iniText.find(kEndOfTextFile) != std::string_view::npos)
        throw Failure(ExitCode::WrongUsage, "The configuration file holds the character 0x1A, which ends a text file.");
    std::string text(iniText);
    if (!text.empty() && !text.ends_with('\n'))
        text += '\n';
    for (const KeyValue& setting : settings)
        text += setting.key + " = " + setting.value + "\n";
    return text + std::string(kEffectKey) + " = " + std::to_string(effectRow) + "\n";
}

std::optional<std::uint32_t> effectRowIn(std::string_view iniText) {
    std::optional<std::uint32_t> row;
    for (const std::string_view line : split(iniText, '\n'))
        if (const Line parts = partsOf(line); parts.key == kEffectKey)
            row = parseNumber(parts.value);
    return row;
}

std::optional<OutputFormat> editorIn(std::string_view settings) {
    for (const std::string_view line : split(settings, '\n')) {
        if (line == kForGif)
            return OutputFormat::Gif;
        if (line == kForPng)
            return OutputFormat::Png;
    }
    return std::nullopt;
}

std::string settingsToRemember(const EffectCatalog& catalog, std::string_view iniText, const Effect& effect,
                               OutputFormat editor, const std::function<bool(std::string_view)>& isDefaultFile) {
    std::vector<std::string_view> keys; // some stand twice
    std::string text(editor == OutputFormat::Gif ? kForGif : kForPng);
    text += '\n';
    for (const std::string_view line : split(iniText, '\n')) {
        const Line parts = partsOf(line);
        const Setting* setting = catalog.settingNamed(parts.key);
        if (setting == nullptr || parts.key == kEffectKey || parts.value == setting->defaultValue ||
            (setting->owner && setting->owner != effect.row) || std::ranges::find(keys, parts.key) != keys.end() ||
            (setting->kind == SettingKind::File && isDefaultFile(parts.value)))
            continue;
        keys.push_back(parts.key);
        text.append(parts.key).append(" = ").append(parts.value) += '\n';
    }
    return text + std::string(kEffectKey) + " = " + std::to_string(effect.row) + "\n";
}

RecalledSettings recalledSettings(const EffectCatalog& catalog, std::string_view settings, const TextEncoder& encode) {
    RecalledSettings recalled;
    for (const std::string_view line : split(settings, '\n')) {
        const Line parts = partsOf(line);
        if (parts.key.empty() || parts.key.starts_with(';') || parts.key == kEffectKey)
            continue;
        const Setting* setting = catalog.settingNamed(parts.key);
        const bool isElsewhere = setting != nullptr && setting->kind == SettingKind::File &&
                                 (parts.value.starts_with("\\\\") || parts.value.starts_with("//"));
        if (setting == nullptr || isElsewhere) {
            recalled.refusals.push_back("The line \"" + std::string(line) + "\" of the file " +
                                        (isElsewhere ? "names a file on another machine" : "has an unknown key") +
                                        " and was left out.");
            continue;
        }
        try {
            recalled.settings.push_back({setting->key, checkedValue(*setting, parts.value, encode)});
        } catch (const Failure& failure) {
            recalled.refusals.push_back(std::string(failure.what()) + " The line of the file was left out.");
        }
    }
    return recalled;
}

} // namespace stage
