// How a file remembers that it was made, and what becomes of that on the way through the private configuration file to
// the plugin and back into a file.
#include "fuzz_target.h"

#include "commands/settings_text.h"
#include "document/remembered.h"
#include "settings/settings_file.h"

#include <fstream>
#include <iterator>
#include <map>

using namespace stage;
using fuzz::mustHold;

namespace {

// The plugin's own description of its settings.
const EffectCatalog& catalog() {
    static const EffectCatalog parsed = [] {
        std::ifstream file(VELDRAN_EFFECTS_TEXT);
        return EffectCatalog::parse(std::string(std::istreambuf_iterator<char>(file), {}));
    }();
    return parsed;
}

// Letters beyond ASCII have no byte.
std::optional<std::string> encode(std::string_view text) {
    const bool isAscii = std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 128; });
    return isAscii ? std::optional(std::string(text)) : std::nullopt;
}

const veldran::SettingRow& rowOf(std::string_view key) {
    const auto rows = veldran::settingRows();
    const auto row = std::ranges::find_if(rows, [&](const veldran::SettingRow& r) { return r.key == key; });
    mustHold(row != rows.end(), "the plugin has every setting that it describes");
    return *row;
}

void mustArrive(std::span<const KeyValue> given, const veldran::PlugInSettings& settings) {
    std::map<veldran::Setting, std::string> last; // two keys may share a value
    for (const KeyValue& setting : given)
        last[rowOf(setting.key).storage] = setting.value;
    for (const auto& [storage, value] : last)
        mustHold(value == (veldran::settingRow(storage).isText() ? settings.text(storage)
                                                                 : std::to_string(settings.number(storage))),
                 "the plugin reads what was meant");
}

void checkRoundTrip(std::string_view remembered) {
    const RecalledSettings recalled = recalledSettings(catalog(), remembered, encode);
    const std::uint32_t row = effectRowIn(remembered).value_or(0);
    const std::string configuration = composeSettings("", recalled.settings, row);
    veldran::PlugInSettings settings;
    veldran::readSettings(configuration, settings);
    mustArrive(recalled.settings, settings);

    const std::string left = veldran::writeSettings(settings, "Sat Nov 14 14:41:00 2026");
    const auto isNoDefaultFile = [](std::string_view) { return false; };
    for (const Effect& effect : catalog().effects()) {
        if (effect.row != row)
            continue;
        const std::string text = settingsToRemember(catalog(), left, effect, OutputFormat::Gif, isNoDefaultFile);
        const RecalledSettings again = recalledSettings(catalog(), text, encode);
        mustHold(effectRowIn(text) == row && editorIn(text) == OutputFormat::Gif, "effect and editor are remembered");
        // A path of another machine may come from the command line, but not from a file.
        for (const std::string& refusal : again.refusals)
            mustHold(refusal.find("another machine") != std::string::npos, "what is remembered is taken again");
        mustArrive(again.settings, settings);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::Input(data, size).text();
    checkRoundTrip(text);
    const std::optional<Remembered> remembered = rememberedFrom(text);
    if (!remembered)
        return 0;
    mustHold(rememberedFrom(rememberedText(*remembered)) == remembered, "what is remembered comes back");
    checkRoundTrip(remembered->settings);
    return 0;
}
