// The text of the private configuration file that the plugin reads while it is driven, and what that text asks for.
// Never adds an empty line, which the plugin would take for a setting.
#pragma once

#include "core/arguments.h"
#include "core/effect_catalog.h"

#include <string_view>

namespace stage {

// The setting that holds the row of the chosen effect.
inline constexpr std::string_view kEffectKey = "MainEffect";

// `iniText` verbatim, then one line a setting, then the effect. Later lines win. `settings` are checked values. Throws
// Failure(WrongUsage) when `iniText` holds the byte at which a text file ends (0x1A): what follows would not be read.
std::string composeSettings(std::string_view iniText, std::span<const KeyValue> settings, std::uint32_t effectRow);

// The key of the setting in `text` that makes frames without a palette, or nothing. A test build never carries opacity.
std::optional<std::string> trueColourKey(const EffectCatalog& catalog, std::string_view text, BuildButton button);

// Why such frames cannot be written and what to do about it.
std::string trueColourRefusal();

} // namespace stage
