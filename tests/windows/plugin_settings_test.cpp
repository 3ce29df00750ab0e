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

void expectValues(const Recording& seen, const std::vector<std::pair<std::string, std::string>>& expected) {
    std::map<std::string, std::string> values = valuesOf(seen.settingsFile);
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

TEST(Settings, FileIsWrittenAfterCancelInFolderAndAllAndShiftIgnoresIt) {
    const Recording seen = cancelled(std::nullopt);
    EXPECT_EQ(seen.result, 1);
    EXPECT_TRUE(seen.messages.empty());
    EXPECT_EQ(seen.folder, (Texts{"VELDRAN1.INI", "VELDRAN1.MRK"})); // no temporary file beside it
    const Texts lines = linesOf(seen.settingsFile);
    ASSERT_EQ(lines.size(), 5u + 327); // header and rows
    const std::regex date(";Last updated [A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}");
    EXPECT_TRUE(std::regex_match(lines[2], date)) << lines[2]; // the core's tests know the rest

    const ShiftHeld shift;
    ASSERT_LT(GetKeyState(VK_SHIFT), 0);
    const Recording ignored = cancelled("MainDelay = 9\nMainEffect = 15\nMainVoiceSound = C:\\x.wav\nLabelLeft = L\n");
    EXPECT_EQ(undated(ignored.settingsFile), undated(seen.settingsFile));
}

TEST(Settings, ControlsAndEditorsDecideWhatIsKeptOfAFile) {
    const std::string documents = specialFolder(CSIDL_PERSONAL);
    ASSERT_FALSE(documents.empty());
    for (const auto& [flags, editor] : {std::pair{1u, "Tavolin"}, {2u, "Merrowin"}}) {
        Session session;
        session.flags = flags;
        session.settings =
            "MainDelay = 99999\nMainRadarSize = 4294967295\nMainRadarAngle = 1\nMainPalette = 77\nMainEffect = 20\n"
            "MainRadarIncrement = 34\nMainRadarPanelColor = 4294967295\nAlphaGreyBack = 4294967295\r\n"
            "VersionNumber = 3\nNobody = 4\nMainTachD = 0,1;100,2\n"
            "MainVoiceSound =\nMainSonicSound = C:\\a b\\\xE4=;.wav\n";
        const Recording seen = run(session);
        expectValues(seen, {{"MainDelay", "32768"},
                            {"MainRadarAngle", "30"},
                            {"MainPalette", "6"},
                            {"MainEffect", "4"},
                            {"MainRadarSize", "256"},
                            {"MainRadarIncrement", "22"},
                            {"MainRadarPanelColor", "16777215"},
                            {"AlphaGreyBack", "4294967295"},
                            {"VersionNumber", "512"},
                            {"MainTachDataPointList", "0,1;100,2"},
                            {"MainSonicSound", "C:\\a b\\\xE4=;.wav"}});
        EXPECT_FALSE(valuesOf(seen.settingsFile).contains("Nobody"));
        const std::string folder = documents + "\\My " + editor + " 16 Documents\\";
        expectValues(seen, {{"MainVUDigVertSound", folder + "Default.wav"},
                            {"MainVoiceSound", folder + "Default.wav"},
                            {"MainDatapadTextFile", folder + "Default.txt"},
                            {"MainBarGraphImageFile", folder + "Default.jpg"}});
    }
}

TEST(Settings, AFileThatCannotBeReplacedStaysAsItWas) {
    const Step obstruct = [](HWND dialog) {
        setText(dialog, kDelay, "33");
        const std::string begun =
            specialFolder(CSIDL_APPDATA) + "\\Korvel\\VELDRAN1.INI." + std::to_string(GetCurrentProcessId());
        EXPECT_TRUE(CreateDirectoryA(begun.c_str(), nullptr)); // where the new file would be begun
    };
    const Recording seen = cancelled("MainDelay = 9\r\n", {obstruct});
    EXPECT_EQ(seen.result, 1);
    EXPECT_TRUE(seen.boxes.empty());
    EXPECT_EQ(seen.settingsFile, "MainDelay = 9\r\n");
}

} // namespace
