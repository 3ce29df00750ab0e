// The configuration file as a person finds it after a session, and what the dialog makes of a file that a person wrote.
// Runs in a folder of its own; the person's settings are moved aside.
#include "recording_host.h"
#include "settings_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>

#include <shlobj.h>

namespace {

using namespace recording;
using Texts = std::vector<std::string>;

constexpr std::size_t kHeaderLines = 5;
constexpr std::size_t kRows = 327;

Recording cancelled(const std::optional<std::string>& settings, std::vector<Step> steps = {}) {
    Session session;
    session.settings = settings;
    session.steps = std::move(steps);
    return run(session);
}

// Lines without their CR LF; any other line end is a failure.
Texts linesOf(const std::string& file) {
    Texts lines;
    std::size_t begin = 0;
    for (std::size_t end; (end = file.find("\r\n", begin)) != std::string::npos; begin = end + 2)
        lines.push_back(file.substr(begin, end - begin));
    EXPECT_EQ(begin, file.size());
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(file, '\n')), lines.size());
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(file, '\r')), lines.size());
    return lines;
}

std::map<std::string, std::string> valuesOf(const std::string& file) {
    std::map<std::string, std::string> values;
    for (const std::string& line : linesOf(file))
        if (const std::size_t equals = line.find(" = "); equals != std::string::npos)
            values[line.substr(0, equals)] = line.substr(equals + 3);
    return values;
}

// The file without the line that tells the time.
Texts undated(const std::string& file) {
    Texts lines = linesOf(file);
    std::erase_if(lines, [](const std::string& line) { return line.starts_with(";Last updated "); });
    return lines;
}

TEST(Settings, FileIsWrittenAfterCancelInFolderAndAll) {
    const Recording seen = cancelled(std::nullopt);
    EXPECT_EQ(seen.result, 1);
    EXPECT_TRUE(seen.messages.empty());
    EXPECT_EQ(seen.folder, (Texts{"VELDRAN1.INI", "VELDRAN1.MRK"})); // no temporary file beside it
    const Texts lines = linesOf(seen.settingsFile);
    ASSERT_EQ(lines.size(), kHeaderLines + kRows);
    const std::regex date(";Last updated [A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}");
    EXPECT_TRUE(std::regex_match(lines[2], date)) << lines[2]; // the core's tests know the rest
}

TEST(Settings, WhatTheDialogShowsComesBack) {
    const Step edit = [](HWND dialog) {
        setChoice(dialog, kEffect, kRadar);
        setChoice(dialog, kPalette, 3);
        setCheck(dialog, kSupercompress, true);
        setCheck(dialog, kAlpha, true);
        setCheck(dialog, kRadarPing, false);
        setText(dialog, kDelay, "77");
        setText(dialog, kRadarSize, "200");
        setChoice(dialog, kRadarIncrement, 0);
    };
    const Recording first = cancelled("[PlugIn]\nAlphaGreyBack = 4294967295\r\nVersionNumber = 3\nNobody = 4\n"
                                      "MainDatapadTextFile = C:\\a b\\\xE4=;.txt\nMainTachD = 0,1;100,2",
                                      {edit});
    std::map<std::string, std::string> values = valuesOf(first.settingsFile);
    const char* const expected[][2] = {{"MainEffect", "15"},
                                       {"MainPalette", "3"},
                                       {"MainSupercompress", "1"},
                                       {"MainAlphaTrans", "1"},
                                       {"MainRadarPingMarkers", "0"},
                                       {"MainDelay", "77"},
                                       {"MainRadarSize", "200"},
                                       {"MainRadarIncrement", "0"},
                                       {"AlphaGreyBack", "4294967295"},
                                       {"MainDatapadTextFile", "C:\\a b\\\xE4=;.txt"},
                                       {"MainTachDataPointList", "0,1;100,2"},
                                       {"VersionNumber", "512"}};
    for (const auto& [key, value] : expected)
        EXPECT_EQ(values[key], value) << key;
    EXPECT_FALSE(values.contains("Nobody"));
    // What was entered fills the controls again.
    EXPECT_EQ(undated(cancelled(first.settingsFile).settingsFile), undated(first.settingsFile));
}

TEST(Settings, ControlsLimitWhatAFileSays) {
    const Recording seen = cancelled("MainDelay = 99999\nMainRadarSize = 4294967295\nMainRadarAngle = 1\n"
                                     "MainPalette = 77\nMainEffect = 20\nMainRadarIncrement = 34\n"
                                     "MainRadarPanelColor = 4294967295\n");
    std::map<std::string, std::string> values = valuesOf(seen.settingsFile);
    const std::pair<const char*, const char*> expected[] = {{"MainDelay", "32768"},
                                                            {"MainRadarAngle", "30"},
                                                            {"MainPalette", "6"},
                                                            {"MainEffect", "4"},
                                                            {"MainRadarSize", "256"},
                                                            {"MainRadarIncrement", "22"},
                                                            {"MainRadarPanelColor", "16777215"}};
    for (const auto& [key, value] : expected)
        EXPECT_EQ(values[key], value) << key;
}

// Holds Shift for the thread, as far as GetKeyState tells.
class ShiftHeld {
public:
    ShiftHeld() { set(0x80); }
    ShiftHeld(const ShiftHeld&) = delete;
    ShiftHeld& operator=(const ShiftHeld&) = delete;
    ~ShiftHeld() { set(0); }

private:
    static void set(BYTE state) {
        BYTE keys[256] = {};
        keys[VK_SHIFT] = state;
        SetKeyboardState(keys);
    }
};

TEST(Settings, ShiftIgnoresTheFile) {
    const std::string file = "MainDelay = 9\nMainEffect = 15\nMainVoiceSound = C:\\x.wav\nLabelLeft = L\n";
    const Recording normal = cancelled(std::nullopt);
    const ShiftHeld shift;
    ASSERT_LT(GetKeyState(VK_SHIFT), 0);
    const Recording seen = cancelled(file);
    EXPECT_EQ(undated(seen.settingsFile), undated(normal.settingsFile));
}

TEST(Settings, FilePathsBeginInTheEditorsFolder) {
    const std::string documents = specialFolder(CSIDL_PERSONAL);
    ASSERT_FALSE(documents.empty());
    const std::pair<std::string, const char*> files[] = {{"VUDigVertSound", "Default.wav"},
                                                         {"VoiceSound", "Default.wav"},
                                                         {"DatapadTextFile", "Default.txt"},
                                                         {"BarGraphImageFile", "Default.jpg"}};
    const std::pair<std::uint32_t, const char*> editors[] = {{1, "Tavolin"}, {2, "Merrowin"}};
    for (const auto& [flags, editor] : editors) {
        SCOPED_TRACE(flags);
        Session session;
        session.flags = flags;
        session.settings = "MainVoiceSound =\nMainSonicSound = C:\\own.wav\n";
        std::map<std::string, std::string> values = valuesOf(run(session).settingsFile);
        const std::string folder = documents + "\\My " + editor + " 16 Documents\\";
        for (const auto& [key, name] : files)
            EXPECT_EQ(values["Main" + key], folder + name) << key;
        EXPECT_EQ(values["MainSonicSound"], "C:\\own.wav");
    }
}

TEST(Settings, AFileThatCannotBeReplacedStaysAsItWas) {
    const std::string folder = specialFolder(CSIDL_APPDATA) + "\\Korvel";
    const Step obstruct = [&](HWND dialog) {
        setText(dialog, kDelay, "33");
        const std::string begun = folder + "\\VELDRAN1.INI." + std::to_string(GetCurrentProcessId());
        EXPECT_TRUE(CreateDirectoryA(begun.c_str(), nullptr)); // where the new file would be begun
    };
    const Recording seen = cancelled("MainDelay = 9\r\n", {obstruct});
    EXPECT_EQ(seen.result, 1);
    EXPECT_TRUE(seen.boxes.empty());
    EXPECT_EQ(seen.settingsFile, "MainDelay = 9\r\n");
}

} // namespace
