// The text of the private configuration file that the plugin reads while it is driven, and what a file remembers of it.
// Never adds an empty line, which the plugin would take for a setting.
#pragma once

#include "commands/arguments.h"
#include "commands/effect_catalog.h"
#include "commands/setting_value.h"

#include <string_view>

namespace stage {

// The setting that holds the row of the chosen effect.
inline constexpr std::string_view kEffectKey = "MainEffect";

// `iniText` verbatim, then one line a setting, then the effect. Later lines win. `settings` are checked values. Throws
// Failure(WrongUsage) when `iniText` holds the byte at which a text file ends (0x1A): what follows would not be read.
std::string composeSettings(std::string_view iniText, std::span<const KeyValue> settings, std::uint32_t effectRow);

// The row of the effect in such a text, or nothing.
std::optional<std::uint32_t> effectRowIn(std::string_view iniText);
// The kind of editor that a remembered text was made for: Gif, or Png for all others; nothing when it does not say. Its
// delays mean other times in the other kind.
std::optional<OutputFormat> editorIn(std::string_view settings);

// From the configuration file that the plugin left behind, in UTF-8, what another render of the effect needs: its own
// settings and those of all effects that are not at their defaults, one line each, the effect, and for which kind of
// editor it was made. Files for which `isDefaultFile` holds are left to the plugin to find again.
std::string settingsToRemember(const EffectCatalog& catalog, std::string_view iniText, const Effect& effect,
                               OutputFormat editor, const std::function<bool(std::string_view)>& isDefaultFile);

struct RecalledSettings {
    std::vector<KeyValue> settings;    // checked and encoded
    std::vector<std::string> refusals; // in words, one for each line that this plugin does not take
};
// What a file remembers comes from another hand: only lines with a known key and an allowed value pass, and no file on
// another machine.
RecalledSettings recalledSettings(const EffectCatalog& catalog, std::string_view settings, const TextEncoder& encode);

} // namespace stage
