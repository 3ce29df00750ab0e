// Prints the description of effects and settings that becomes the plugin's text resource, from the plugin's own tables.
// Lines of fields separated by tabs:
//   voltane-effects  1
//   button   test  control identity
//   effect   row  name
//   markers  row of the effect that has a list of markers
//   setting  key  flag|integer|colour|choice|text|file  default  minimum  maximum  effect row or "-"  label  choices
// Numbers are unsigned decimal; an empty minimum and maximum mean no bound; choices are separated by ";", and such a
// setting stores the position of the choice. Settings that are never read back are left out.
#include "instruments/effect_list.h"
#include "settings/output_options.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <string_view>

using namespace veldran;

namespace {

struct Description {
    std::string kind;
    std::string minimum;
    std::string maximum;
    std::string owner = "-";
    std::string label;
    std::string choices;
};

std::string effectNames() {
    std::string names;
    for (const EffectRow& effect : effectRows())
        names.append(names.empty() ? "" : ";").append(effect.name);
    return names;
}

// Labels lose their mnemonic mark and closing colon.
std::string plainLabel(std::string_view label) {
    std::string plain;
    for (const char c : label)
        if (c != '&')
            plain += c;
    if (plain.ends_with(':'))
        plain.pop_back();
    return plain;
}

void describeParameter(const ParameterRow& parameter, Description& description) {
    description.label = plainLabel(parameter.label);
    if (parameter.kind == ParameterKind::Check)
        description.kind = "flag";
    if (parameter.kind == ParameterKind::Colour) {
        description.kind = "colour";
        description.minimum = "0";
        description.maximum = std::to_string(0xFFFFFF);
    }
    if (parameter.kind == ParameterKind::Choice) {
        description.kind = "choice";
        description.choices = parameter.setting == Setting::MainEffect ? effectNames() : parameter.choices;
    }
    if (parameter.kind == ParameterKind::Number) {
        description.kind = "integer"; // whatever it is stored as
        const NumberRange range = parseRange(parameter.range);
        description.minimum = std::to_string(range.minimum);
        description.maximum = std::to_string(range.maximum);
    }
}

const ParameterRow* findParameter(std::span<const ParameterRow> rows, Setting setting) {
    for (const ParameterRow& row : rows)
        if (row.setting == setting)
            return &row;
    return nullptr;
}

// What one key of a value calls a flag holds no more under another key.
bool isFlag(const SettingRow& row) {
    return std::ranges::any_of(settingRows(), [&](const SettingRow& other) {
        return other.storage == row.storage && (other.kind & kSettingFlag) != 0;
    });
}

// The row's kind without any control: from the table alone.
const char* storedKind(const SettingRow& row) {
    const std::string_view key = row.key;
    if (row.isText())
        return key.ends_with("Sound") || key.ends_with("File") ? "file" : "text";
    if (isFlag(row))
        return "flag";
    return key.ends_with("Color") || key == "AlphaGreyBack" ? "colour" : "integer";
}

Description describe(const SettingRow& row) {
    Description description;
    description.kind = storedKind(row);
    for (const OptionRow& option : kOutputOptions)
        if (option.parameter.setting == row.storage)
            describeParameter(option.parameter, description);
    for (std::size_t i = 0; i < effectRows().size(); ++i) {
        const EffectRow& effect = effectRows()[i];
        if (!std::string_view(row.key).starts_with(effect.keyStem))
            continue;
        description.owner = std::to_string(i);
        if (const ParameterRow* parameter = findParameter(effect.parameters, row.storage))
            describeParameter(*parameter, description);
    }
    return description;
}

void printSetting(const SettingRow& row) {
    const Description d = describe(row);
    const SettingRow& storage = settingRow(row.storage);
    const std::string value = row.isText() ? storage.text : std::to_string(storage.number);
    std::printf("setting\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\n", row.key, d.kind.c_str(), value.c_str(), d.minimum.c_str(),
                d.maximum.c_str(), d.owner.c_str(), d.label.c_str(), d.choices.c_str());
}

} // namespace

int main() {
    std::printf("voltane-effects\t1\nbutton\ttest\t%d\n", kControlTest);
    for (std::size_t i = 0; i < effectRows().size(); ++i)
        std::printf("effect\t%zu\t%s\n", i, effectRows()[i].name);
    for (std::size_t i = 0; i < effectRows().size(); ++i)
        for (const ParameterRow& parameter : effectRows()[i].parameters)
            if (parameter.kind == ParameterKind::Markers)
                std::printf("markers\t%zu\n", i);
    std::set<std::string_view> printed;
    for (const SettingRow& row : settingRows())
        if (row.isReadable() && printed.insert(row.key).second)
            printSetting(row);
    return std::ferror(stdout) != 0 || std::fflush(stdout) != 0 ? 1 : 0;
}
