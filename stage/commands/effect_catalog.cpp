// Parsing and searching the plugin's text resource. Each line is a list of fields divided by tabs; every field is
// there, though it may be empty.
#include "commands/effect_catalog.h"

#include "base/failure.h"
#include "base/text.h"

#include <algorithm>
#include <array>

namespace stage {
namespace {

constexpr std::string_view kFirstLine = "voltane-effects\t1";

struct KindName {
    SettingKind kind;
    std::string_view name;
};
constexpr std::array<KindName, 6> kKindNames = {{
    {SettingKind::Flag, "flag"},
    {SettingKind::Integer, "integer"},
    {SettingKind::Colour, "colour"},
    {SettingKind::Choice, "choice"},
    {SettingKind::Text, "text"},
    {SettingKind::File, "file"},
}};

// A fault of the resource; the caller adds the number of the line.
struct Damage {
    std::string what;
};

void require(bool condition, const char* what) {
    if (!condition)
        throw Damage{what};
}

std::uint32_t requiredNumber(std::string_view field, const char* what) {
    const auto number = parseNumber(field);
    require(number.has_value(), what);
    return *number;
}

std::optional<std::uint32_t> optionalNumber(std::string_view field, const char* what) {
    if (field.empty())
        return std::nullopt;
    return requiredNumber(field, what);
}

bool isText(SettingKind kind) {
    return kind == SettingKind::Text || kind == SettingKind::File;
}

SettingKind parseKind(std::string_view field) {
    const auto found = std::ranges::find(kKindNames, field, &KindName::name);
    require(found != kKindNames.end(), "an unknown kind of setting");
    return found->kind;
}

} // namespace

std::string_view kindName(SettingKind kind) {
    return std::ranges::find(kKindNames, kind, &KindName::kind)->name;
}

std::string_view plainName(std::string_view effectName) {
    if (effectName.ends_with(" *"))
        effectName.remove_suffix(2);
    return effectName;
}

EffectCatalog EffectCatalog::parse(std::string_view text) {
    std::vector<std::string_view> lines = split(text, '\n');
    if (lines.front() != kFirstLine)
        throw Failure(ExitCode::PluginFailed,
                      "The plugin's list of effects has a form that this program does not know.");
    if (lines.back().empty())
        lines.pop_back();

    EffectCatalog catalog;
    std::size_t number = 1;
    try {
        for (; number < lines.size(); ++number)
            catalog.parseLine(split(lines[number], '\t'));
        catalog.checkWhole();
    } catch (const Damage& damage) {
        throw Failure(ExitCode::PluginFailed, "The plugin's list of effects is damaged at line " +
                                                  std::to_string(std::min(number + 1, lines.size())) + ": " +
                                                  damage.what + ".");
    }
    return catalog;
}

void EffectCatalog::parseLine(std::span<const std::string_view> fields) {
    if (fields[0] == "button") {
        require(fields.size() == 3 && fields[1] == "test", "a button of an unknown form");
        require(testButton_ == 0, "a second test button");
        testButton_ = requiredNumber(fields[2], "no control identity");
        require(testButton_ >= 1 && testButton_ <= 0xFFFF, "a control identity out of range");
    } else if (fields[0] == "markers") {
        require(fields.size() == 2 && !markersRow_, "markers of an unknown form");
        markersRow_ = requiredNumber(fields[1], "no row number");
    } else if (fields[0] == "effect") {
        parseEffect(fields);
    } else if (fields[0] == "setting") {
        parseSetting(fields);
    } else {
        throw Damage{"a line of an unknown kind"};
    }
}

void EffectCatalog::parseEffect(std::span<const std::string_view> fields) {
    require(fields.size() == 3, "a wrong number of fields");
    const std::uint32_t row = requiredNumber(fields[1], "no row number");
    require(std::ranges::find(effects_, row, &Effect::row) == effects_.end(), "a row that stands twice");
    require(!fields[2].empty(), "an effect without a name");
    effects_.push_back({row, std::string(fields[2])});
}

void EffectCatalog::parseSetting(std::span<const std::string_view> fields) {
    require(fields.size() == 9, "a wrong number of fields");
    Setting setting{};
    setting.key = fields[1];
    require(!setting.key.empty() && setting.key.find_first_of(" =") == std::string::npos, "a key of a wrong form");
    require(settingNamed(setting.key) == nullptr, "a key that stands twice");
    setting.kind = parseKind(fields[2]);
    setting.defaultValue = fields[3];
    require(isText(setting.kind) || parseNumber(fields[3]), "a default that is not a number");
    setting.minimum = optionalNumber(fields[4], "a minimum that is not a number");
    setting.maximum = optionalNumber(fields[5], "a maximum that is not a number");
    require(!setting.minimum || !setting.maximum || *setting.minimum <= *setting.maximum, "an empty range");
    if (fields[6] != "-")
        setting.owner = requiredNumber(fields[6], "an owner that is not a row number");
    setting.label = fields[7];
    if (!fields[8].empty())
        for (const std::string_view choice : split(fields[8], ';'))
            setting.choices.emplace_back(choice);
    require((setting.kind == SettingKind::Choice) == !setting.choices.empty(), "choices that do not fit the kind");
    settings_.push_back(std::move(setting));
}

void EffectCatalog::checkWhole() const {
    require(testButton_ != 0, "no test button");
    require(!effects_.empty(), "no effects");
    require(!markersRow_ || std::ranges::find(effects_, *markersRow_, &Effect::row) != effects_.end(),
            "markers of an effect that is not listed");
    for (const Setting& setting : settings_)
        require(!setting.owner || std::ranges::find(effects_, *setting.owner, &Effect::row) != effects_.end(),
                "a setting of an effect that is not listed");
}

const Effect& EffectCatalog::findEffect(std::string_view nameOrRow) const {
    const auto number = parseNumber(nameOrRow);
    if (const auto found = std::ranges::find(effects_, number, &Effect::row); number && found != effects_.end())
        return *found;

    const std::string wanted = lowerCase(plainName(nameOrRow));
    std::vector<const Effect*> beginnings;
    std::vector<std::string_view> names;
    for (const Effect& effect : effects_) {
        const std::string name = lowerCase(plainName(effect.name));
        if (name == wanted)
            return effect;
        if (!wanted.empty() && name.starts_with(wanted))
            beginnings.push_back(&effect);
        names.push_back(plainName(effect.name));
    }
    if (beginnings.size() == 1)
        return *beginnings.front();
    std::string message = "There is no effect \"" + std::string(nameOrRow) + "\". ";
    if (beginnings.empty()) {
        message += "Allowed are the names and row numbers that \"stage list\" shows; the nearest name is \"" +
                   std::string(nearest(plainName(nameOrRow), names)) + "\".";
    } else {
        message += "Several begin like this:";
        for (const Effect* effect : beginnings)
            message += " \"" + std::string(plainName(effect->name)) + "\"";
    }
    throw Failure(ExitCode::WrongUsage, message);
}

const Setting* EffectCatalog::settingNamed(std::string_view key) const {
    const auto found = std::ranges::find(settings_, key, &Setting::key);
    return found == settings_.end() ? nullptr : &*found;
}

const Setting& EffectCatalog::findSetting(std::string_view key) const {
    if (const Setting* exact = settingNamed(key))
        return *exact;
    std::vector<std::string_view> keys;
    for (const Setting& setting : settings_) {
        if (equalIgnoringCase(setting.key, key))
            return setting;
        keys.push_back(setting.key);
    }
    throw Failure(ExitCode::WrongUsage, "There is no setting \"" + std::string(key) +
                                            "\". Allowed are the keys that \"stage list\" shows; the nearest is \"" +
                                            std::string(nearest(key, keys)) + "\".");
}

} // namespace stage
