// The description of effects and settings that a plugin carries, and what is looked up in it.
#include "fuzz_target.h"

#include "core/effect_catalog.h"
#include "core/failure.h"
#include "core/setting_value.h"

#include <optional>

using namespace stage;
using fuzz::mustHold;

namespace {

std::optional<EffectCatalog> parsed(std::string_view text) {
    try {
        return EffectCatalog::parse(text);
    } catch (const Failure& failure) {
        mustHold(failure.code() == ExitCode::PluginFailed, "a damaged list is the plugin's fault");
        return std::nullopt;
    }
}

void checkValue(const Setting& setting, std::string_view value) {
    const auto asItIs = [](std::string_view text) { return std::optional(std::string(text)); };
    std::string stored;
    try {
        stored = checkedValue(setting, value, asItIs);
    } catch (const Failure& failure) {
        mustHold(failure.code() == ExitCode::WrongUsage, "a refusal is about what was given");
        return;
    }
    mustHold(checkedValue(setting, shownValue(setting, stored), asItIs) == stored, "a value as shown is taken");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::Input(data, size).text();
    const std::optional<EffectCatalog> catalog = parsed(text);
    if (!catalog)
        return 0;
    for (const Effect& effect : catalog->effects())
        mustHold(catalog->findEffect(std::to_string(effect.row)).row == effect.row, "an effect is found by its row");
    for (const Setting& setting : catalog->settings()) {
        mustHold(&catalog->findSetting(setting.key) == &setting, "a setting is found by its key");
        mustHold(!allowedValues(setting).empty(), "there is a word for what is allowed");
        for (const std::string_view value : {std::string_view(setting.defaultValue), text.substr(0, 3)})
            checkValue(setting, value);
    }
    return 0;
}
