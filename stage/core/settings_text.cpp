// Composing and reading back the private configuration file; see the header.
#include "core/settings_text.h"

#include "core/failure.h"
#include "core/text.h"

#include <algorithm>

namespace stage {
namespace {

constexpr char kEndOfTextFile = 0x1A;
constexpr std::string_view kTrueColour = "Truecolour";
constexpr std::string_view kAlpha = "MainAlphaTrans";

// As the plugin converts it: the leading decimal digits, 0 without any.
bool isNonZero(std::string_view value) {
    const std::string_view digits = value.substr(0, value.find_first_not_of("0123456789"));
    return digits.find_first_not_of('0') != std::string_view::npos;
}

// The last line with the key counts; without one the default.
bool isSwitchedOn(const EffectCatalog& catalog, std::string_view text, std::string_view key) {
    const Setting* setting = catalog.settingNamed(key);
    bool on = setting != nullptr && isNonZero(setting->defaultValue);
    for (std::string_view line : split(text, '\n')) {
        if (line.substr(0, line.find_first_of(" =\r\t")) != key)
            continue;
        line.remove_prefix(key.size());
        line.remove_prefix(std::min(line.find_first_not_of(" ="), line.size()));
        on = isNonZero(line);
    }
    return on;
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

std::optional<std::string> trueColourKey(const EffectCatalog& catalog, std::string_view text, BuildButton button) {
    if (isSwitchedOn(catalog, text, kTrueColour))
        return std::string(kTrueColour);
    if (button == BuildButton::Build && isSwitchedOn(catalog, text, kAlpha))
        return std::string(kAlpha);
    return std::nullopt;
}

std::string trueColourRefusal() {
    return "Frames in true colour or with opacity cannot be written into a GIF file. Give --as png, or --set "
           "Truecolour=0 and --set MainAlphaTrans=0.";
}

} // namespace stage
