// Parameters and the table of instruments: ranges of fields, the control identities that dialogs and scripts count on,
// and the help document, which has a topic for each panel and tells of every control with the range that it allows.
#include "instruments/effect_list.h"
#include "instruments/scopes/radar_model.h"
#include "settings/output_options.h"
#include "ui/help_topics.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>

namespace veldran {
namespace {

TEST(Parameter, FieldsAreClampedToTheirRange) {
    const std::tuple<const char*, std::int64_t, int> cases[] = {{"30,180,90", 500, 180},
                                                                {"30,180,90", 4294967295, 180},
                                                                {"-10,10,0", -11, -10},
                                                                {"", 101, 100},
                                                                {"none", 50, 50},
                                                                {" 5, 8", 9, 8},
                                                                {"50,10", 5, 50},
                                                                {"-2147483648,9,0", INT64_MIN, INT32_MIN},
                                                                {"0,2147483647,0", INT64_MAX, INT32_MAX}};
    for (const auto& [range, value, clamped] : cases)
        EXPECT_EQ(clampToRange(value, parseRange(range)), clamped) << range << " " << value;
}

TEST(Parameter, FieldsBeginWithTheirInteger) {
    const NumberRange counting{0, 100}, both{-100, 100};
    for (const auto& [text, value] : {std::pair{"  42 frames", 42}, {"frames", 0}, {"", 0}, {"-7", 0}})
        EXPECT_EQ(fieldInteger(text, counting), value) << text;
    EXPECT_EQ(fieldInteger("-7", both), -7);
    EXPECT_EQ(fieldInteger(std::string(30, '9'), counting), INT64_MAX);
    EXPECT_EQ(fieldInteger("-" + std::string(30, '9'), both), INT64_MIN);
}

// The sum is that of "name|key stem|first control|last control|spinners" and a line feed for each row, computed by a
// script from a list of its own.
TEST(EffectList, StandsInTheOrderThatSettingsStore) {
    std::ostringstream list;
    for (const EffectRow& row : effectRows())
        list << row.name << '|' << row.keyStem << '|' << row.firstControl << '|' << row.lastControl << '|'
             << row.spinnerCount << '\n';
    const std::string text = list.str();
    EXPECT_EQ(crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size())), 0xDA1649EFu)
        << text;
}

TEST(EffectList, PanelsUseTheirOwnSettings) {
    for (const EffectRow& row : effectRows()) {
        EXPECT_FALSE(row.parameters.empty()) << row.name;
        for (const ParameterRow& parameter : row.parameters)
            EXPECT_TRUE(parameter.setting == Setting::None ||
                        std::string_view(settingRow(parameter.setting).key).starts_with(row.keyStem))
                << row.name << " " << parameter.label;
    }
}

TEST(EffectList, ControlsAreNumberedInOrderWithSpinnersBehindTheirFields) {
    EXPECT_EQ(controlList({}), std::vector<int>{0}); // an instrument without a panel
    EXPECT_EQ(controlList(effectRows()[15]),
              (std::vector<int>{329, 330, 331,   332, 333, 334, 335, 336,   337, 338, 339, 340, 10340,
                                341, 342, 10342, 343, 344, 345, 346, 10346, 347, 348, 349, 350, 0}));
    EXPECT_EQ(kRadarControl<Setting::MainRadarIncrement>, 344);
    EXPECT_EQ(kRadarControl<Setting::None>, 348);                       // the list of markers
    EXPECT_EQ(controlOf(kRadarParameters, 329, Setting::MainDelay), 0); // not on this panel
}

std::string readDocument() {
    std::ifstream file(VELDRAN_HELP_DOCUMENT, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The values of an attribute, in order.
std::vector<std::string> choiceValues(const std::string& html, const std::string& attribute) {
    const std::string opening = " " + attribute + "=\"";
    std::vector<std::string> values;
    for (std::size_t at = html.find(opening); at != std::string::npos; at = html.find(opening, at)) {
        at += opening.size();
        values.push_back(html.substr(at, html.find('"', at) - at));
    }
    return values;
}

// What stands in the document's section with this anchor; empty without one.
std::string sectionOf(const std::string& html, const std::string& topic) {
    const std::size_t begin = html.find("<section id=\"" + topic + "\"");
    return begin == std::string::npos ? "" : html.substr(begin, html.find("</section>", begin) - begin);
}

// How the document heads the paragraph of a control.
std::string headingOf(const ParameterRow& row) {
    std::string label = row.label;
    std::erase(label, '&');
    if (label.ends_with(':'))
        label.pop_back();
    if (row.kind != ParameterKind::Number)
        return "<dt>" + label + "</dt>";
    const NumberRange range = parseRange(row.range);
    return "<dt>" + label + " <small>" + std::to_string(range.minimum) + " to " + std::to_string(range.maximum) +
           "</small></dt>";
}

TEST(HelpTopics, EveryTopicHasItsAnchorAndLinksLeadSomewhere) {
    const std::string html = readDocument();
    std::set<std::string> anchors, topics(kGeneralHelpTopics.begin(), kGeneralHelpTopics.end());
    topics.insert(kEffectHelpTopics.begin(), kEffectHelpTopics.end());
    EXPECT_EQ(topics.size(), kGeneralHelpTopics.size() + kEffectHelpTopics.size());
    for (const std::string& topic : topics)
        EXPECT_FALSE(sectionOf(html, topic).empty()) << topic;
    for (const auto& [row, topic] : {std::pair{-1, kHelpMain}, {15, "RADAR"}, {20, kHelpMain}})
        EXPECT_STREQ(helpTopicOf(row), topic);
    for (const std::string& anchor : choiceValues(html, "id"))
        EXPECT_TRUE(anchors.insert(anchor).second) << anchor;
    for (const std::string& link : choiceValues(html, "href"))
        EXPECT_TRUE(link.starts_with('#') && anchors.contains(link.substr(1))) << link;
}

TEST(HelpTopics, PanelsAreToldWhole) {
    const std::string html = readDocument();
    for (std::size_t i = 0; i < kEffectHelpTopics.size(); ++i) {
        const EffectRow& effect = effectRows()[i];
        const std::string section = sectionOf(html, kEffectHelpTopics[i]);
        for (const ParameterRow& row : effect.parameters)
            EXPECT_NE(section.find(headingOf(row)), std::string::npos) << effect.name << ": " << headingOf(row);
    }
    for (const OptionRow& option : kOutputOptions)
        EXPECT_NE(html.find(headingOf(option.parameter)), std::string::npos) << headingOf(option.parameter);
}

} // namespace
} // namespace veldran
