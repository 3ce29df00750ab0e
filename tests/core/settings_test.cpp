// The settings table and the configuration file: what stands in it, how forgiving reading is, and that nothing is lost
// between writing and reading. Works on texts in memory; never touches anybody's own file.
#include "settings/settings_file.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>

namespace veldran {
namespace {

using enum Setting;

constexpr const char* kTimestamp = "Sat Nov 14 14:41:00 2026";

unsigned long checksum(const std::string& text) {
    return crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size()));
}

// The value as the file shows it.
std::string shown(const PlugInSettings& settings, Setting setting) {
    return settingRow(setting).isText() ? settings.text(setting) : std::to_string(settings.number(setting));
}

PlugInSettings settingsFrom(std::string_view file) {
    PlugInSettings settings;
    readSettings(file, settings);
    return settings;
}

std::string bytesOf(const PlugInSettings& settings) {
    return writeSettings(settings, kTimestamp);
}

TEST(SettingsTable, RowsHaveTheirKeysKindsAndDefaults) {
    std::string kinds;
    for (const SettingRow& row : settingRows()) {
        kinds += std::string(row.key) + ":" + std::to_string(row.kind & 7) + ";";
        EXPECT_EQ(row.extra != 0, (row.kind & kSettingMarked) != 0) << row.key;
        EXPECT_EQ(settingRow(row.storage).storage, row.storage) << row.key;
    }
    EXPECT_EQ(kSettingCount, 327u);
    // Both sums come from a script that composes the file from a list of the keys of its own.
    EXPECT_EQ(checksum(kinds), 0x0363C898u);
    EXPECT_EQ(checksum(bytesOf({})), 0x98116507u);
}

TEST(SettingsTable, TwoKeysOfOneValueShareItAndTextsKeepTheirFirst260Bytes) {
    const std::pair<Setting, Setting> shared[] = {{InstrumentFontName, AdvancedInstrumentFontName},
                                                  {LabelLeft, AdvancedLabelLeft},
                                                  {MainSonicUseBezel, MainSonicUseBezelAgain},
                                                  {MainVoiceUseScale, MainVoiceUseScaleAgain}};
    PlugInSettings settings;
    for (const auto& [first, second] : shared) {
        settings.setText(second, "other");
        settings.setNumber(first, 7);
        EXPECT_EQ(shown(settings, first), settingRow(first).isText() ? "other" : "7") << settingRow(first).key;
        EXPECT_EQ(shown(settings, second), shown(settings, first)) << settingRow(first).key;
    }
    settings.setText(MainSonicSound, std::string(259, 'p') + "xyz");
    EXPECT_EQ(settings.text(MainSonicSound), std::string(259, 'p') + "x");
    settings.reset();
    EXPECT_EQ(bytesOf(settings), bytesOf({}));
}

// A file, a setting and the value that it has then.
using LineCase = std::tuple<std::string, Setting, std::string>;

void expectValues(std::span<const LineCase> cases) {
    for (const auto& [file, setting, value] : cases)
        EXPECT_EQ(shown(settingsFrom(file), setting), value) << testing::PrintToString(file);
}

TEST(SettingsFile, ReadsNumbersTextsAndShortenedKeys) {
    const LineCase cases[] = {{"MainDelay ==  7\r\n", MainDelay, "7"},
                              {"MainDelay", MainDelay, "0"},
                              {"MainDelay=12x3", MainDelay, "12"},
                              {"MainDelay=7\nMainDelay=8\n", MainDelay, "8"},
                              {"MainDelay=7\rMainDelay=8\n", MainDelay, "7"},
                              {"MainDelay=-1", MainDelay, "4294967295"},
                              {"MainDelay=4294967296", MainDelay, "0"},
                              {"MainDelay=99999999999999999999", MainDelay, "1661992959"},
                              {"LabelLeft = L E F T ", LabelLeft, "L E F T "},
                              {"LabelLeft = = x", LabelLeft, "= x"},
                              {std::string("LabelLeft=ab\0cd\nMainDelay=7", 27), LabelLeft, "ab"},
                              {std::string("LabelLeft=ab\0cd\nMainDelay=7", 27), MainDelay, "7"},
                              {"LabelLeft=\xA0\x85\xFF\n", LabelLeft, "\xA0\x85\xFF"},
                              {"MainDel=7", MainDelay, "7"},
                              {"Main=9", MainAlphaTrans, "9"},
                              {"\n", AddDescriptiveCommentBlock, "0"},
                              {"=3", AddDescriptiveCommentBlock, "3"},
                              {" 4", AddDescriptiveCommentBlock, "4"},
                              {" MainDelay=7", MainDelay, "5"}};
    expectValues(cases);
}

TEST(SettingsFile, SkipsWhatItDoesNotKnow) {
    for (const char* file :
         {"", "[PlugIn]\r\n", ";MainDelay=7\n", ";", "maindelay=7", "MainDelays=7", "\xA0MainDelay=7",
          "VersionNumber=9\nPatchLevel=9\nVersion=9", "\x1AMainDelay=7\n", "MainDelay=5\x1A\nMainDelay=8"})
        EXPECT_EQ(bytesOf(settingsFrom(file)), bytesOf({})) << testing::PrintToString(file);
}

// A piece holds 259 bytes, so a comment's rest is a line of its own when the comment is longer.
TEST(SettingsFile, TakesLongLinesInPieces) {
    const auto comment = [](std::size_t length) { return ";" + std::string(length - 1, 'x'); };
    const std::string list = "MainTachDataPointList="; // 22 bytes
    const LineCase cases[] = {{comment(259) + "MainDelay=7\n", MainDelay, "7"},
                              {comment(2 * 259) + "MainDelay=7", MainDelay, "7"},
                              {comment(258) + "\r\nMainDelay=7\n", AddDescriptiveCommentBlock, "1"},
                              {comment(259) + "\r\nMainDelay=7\n", AddDescriptiveCommentBlock, "0"},
                              {comment(259) + "\r\nMainDelay=7\n", MainDelay, "7"},
                              {list + std::string(300, 'x') + "\n", MainTachDataPointList, std::string(237, 'x')},
                              {list + std::string(237, 'x') + "MainDelay=7", MainDelay, "7"}};
    expectValues(cases);
}

TEST(SettingsFile, TenMegabytesOfRubbishEndAndLeaveTheNextLineReadable) {
    std::mt19937 random(1);
    std::string rubbish(10 << 20, '\0');
    for (char& c : rubbish)
        if (c = static_cast<char>(random() >> 24); c == 26)
            c = 'M';
    const PlugInSettings settings = settingsFrom(rubbish + "\nMainDelay=77\n");
    EXPECT_EQ(settings.number(MainDelay), 77u);
    for (const SettingRow& row : settingRows())
        EXPECT_LE(settings.text(row.storage).size(), 258u) << row.key;
}

// Every row off its default comes back, each value under its own key.
TEST(SettingsFile, EveryRowOffItsDefaultComesBack) {
    PlugInSettings written;
    for (const SettingRow& row : settingRows()) {
        const auto index = static_cast<std::uint32_t>(row.storage);
        if (row.isText())
            written.setText(row.storage, "C:\\a b\\" + std::to_string(index) + std::string(200, '~') + "\xFC=;.wav");
        else
            written.setNumber(row.storage, 4294967295u - index);
    }
    const PlugInSettings read = settingsFrom(bytesOf(written));
    const PlugInSettings defaults;
    for (const SettingRow& row : settingRows())
        EXPECT_EQ(shown(read, row.storage), shown(row.isReadable() ? written : defaults, row.storage)) << row.key;
}

} // namespace
} // namespace veldran
