// Parameters and the table of instruments: ranges of fields, and the control identities that dialogs and scripts
// count on. Creates no windows.
#include "instruments/effect_list.h"
#include "instruments/radar_model.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdint>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace veldran {
namespace {

TEST(Parameter, FieldsAreClampedToTheirRange) {
    const struct {
        const char* range;
        std::int64_t value;
        int clamped;
    } cases[] = {{"30,180,90", 500, 180},
                 {"30,180,90", 4294967295, 180},
                 {"-10,10,0", -11, -10},
                 {"", 101, 100},
                 {"none", 50, 50},
                 {" 5, 8", 9, 8},
                 {"50,10", 5, 50},
                 {"-2147483648,9,0", INT64_MIN, INT32_MIN},
                 {"0,2147483647,0", INT64_MAX, INT32_MAX}};
    for (const auto& c : cases)
        EXPECT_EQ(clampToRange(c.value, parseRange(c.range)), c.clamped) << c.range << " " << c.value;
}

TEST(Parameter, FieldsBeginWithTheirInteger) {
    const NumberRange counting{0, 100};
    const NumberRange both{-100, 100};
    EXPECT_EQ(fieldInteger("  42 frames", counting), 42);
    EXPECT_EQ(fieldInteger("frames", counting), 0);
    EXPECT_EQ(fieldInteger("", counting), 0);
    EXPECT_EQ(fieldInteger("-7", counting), 0);
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

// A control of two rows would show on both panels and be read by both instruments.
TEST(EffectList, PanelsShareNoIdentityAndUseTheirOwnSettings) {
    std::set<int> taken;
    for (const EffectRow& row : effectRows()) {
        for (int identity = row.firstControl; identity <= row.lastControl; ++identity)
            EXPECT_TRUE(taken.insert(identity).second) << identity;
        EXPECT_TRUE(!row.parameters.empty()) << row.name;
        for (const ParameterRow& parameter : row.parameters) {
            EXPECT_TRUE(parameter.setting == Setting::None ||
                        std::string_view(settingRow(parameter.setting).key).starts_with(row.keyStem))
                << row.name << " " << parameter.label;
        }
    }
    EXPECT_GE(*taken.begin(), kFirstInstrumentControl);
    EXPECT_LE(*taken.rbegin(), kLastInstrumentControl);
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

} // namespace
} // namespace veldran
