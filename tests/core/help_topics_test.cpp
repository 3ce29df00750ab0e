// The help document against the tables: a topic that the program opens exists, and an instrument's topic tells of every
// control of its panel, with the range that the panel allows.
#include "settings/output_options.h"
#include "ui/help_topics.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace veldran {
namespace {

std::string readDocument() {
    std::ifstream file(VELDRAN_HELP_DOCUMENT, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The values of an attribute, in order.
std::vector<std::string> valuesOf(const std::string& html, const std::string& attribute) {
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

TEST(HelpTopics, EveryTopicHasItsAnchor) {
    const std::string html = readDocument();
    ASSERT_FALSE(html.empty()) << VELDRAN_HELP_DOCUMENT;
    std::set<std::string> topics(kGeneralHelpTopics.begin(), kGeneralHelpTopics.end());
    topics.insert(kEffectHelpTopics.begin(), kEffectHelpTopics.end());
    EXPECT_EQ(topics.size(), kGeneralHelpTopics.size() + kEffectHelpTopics.size());
    for (const std::string& topic : topics)
        EXPECT_FALSE(sectionOf(html, topic).empty()) << topic;
    EXPECT_STREQ(helpTopicOf(-1), kHelpMain);
    EXPECT_STREQ(helpTopicOf(15), "RADAR");
    EXPECT_STREQ(helpTopicOf(20), kHelpMain);
}

TEST(HelpTopics, AnchorsAreUniqueAndLinksLeadSomewhere) {
    const std::string html = readDocument();
    std::set<std::string> anchors;
    for (const std::string& anchor : valuesOf(html, "id"))
        EXPECT_TRUE(anchors.insert(anchor).second) << anchor;
    for (const std::string& link : valuesOf(html, "href"))
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
