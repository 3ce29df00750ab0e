// What the plugin says of itself in its text resource: its effects, and the settings with kind, default, range,
// choices. The only source of such knowledge: no effect and no range is ever spelled out in the host's own code.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace stage {

struct Effect {
    std::uint32_t row; // what the setting MainEffect stores
    std::string name;  // as the plugin's effect list shows it; may end in " *"
};

enum class SettingKind { Flag, Integer, Colour, Choice, Text, File };

struct Setting {
    std::string key;
    SettingKind kind;
    std::string defaultValue; // as the configuration file stores it: numbers decimal, colours 0x00BBGGRR
    std::optional<std::uint32_t> minimum;
    std::optional<std::uint32_t> maximum;
    std::optional<std::uint32_t> owner; // row of the effect; nothing for an option of all effects
    std::string label;
    std::vector<std::string> choices; // a Choice stores the position in this list
};

class EffectCatalog {
public:
    // Throws Failure(PluginFailed) with the line's number when the text is not such a resource, however damaged.
    static EffectCatalog parse(std::string_view text);

    std::span<const Effect> effects() const { return effects_; }
    std::span<const Setting> settings() const { return settings_; }
    // Control identity of the button that starts a test build.
    std::uint32_t testButton() const { return testButton_; }

    // Whether the effect shows a list of markers, which is no setting.
    bool hasMarkers(const Effect& effect) const { return markersRow_ == effect.row; }

    // By row number, by name without regard to case and with or without the trailing " *", or by the beginning of
    // exactly one name. Throws Failure(WrongUsage) naming what was meant.
    const Effect& findEffect(std::string_view nameOrRow) const;
    // Null when there is no such key; the case must match.
    const Setting* settingNamed(std::string_view key) const;
    // Without regard to case. Throws Failure(WrongUsage) naming the nearest key.
    const Setting& findSetting(std::string_view key) const;

private:
    void parseLine(std::span<const std::string_view> fields);
    void parseEffect(std::span<const std::string_view> fields);
    void parseSetting(std::span<const std::string_view> fields);
    void checkWhole() const;

    std::vector<Effect> effects_;
    std::vector<Setting> settings_;
    std::uint32_t testButton_ = 0;
    std::optional<std::uint32_t> markersRow_;
};

std::string_view kindName(SettingKind kind);
// An effect's name without the trailing " *".
std::string_view plainName(std::string_view effectName);

} // namespace stage
