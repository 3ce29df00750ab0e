// The main dialog with all its panels, as a person uses it: layout at every text size, what is entered and what is kept
// of it, what no dialog should ever be given.
#include "base/windows/module.h"
#include "base/windows/visual_styles.h"
#include "dialog_script.h"
#include "instruments/effect_list.h"
#include "settings/curve_points.h"
#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"
#include "settings_folder.h"
#include "ui/windows/controls/curve_control.h"
#include "ui/windows/main_dialog.h"
#include "ui/windows/panel.h"
#include "ui/windows/plugin_fonts.h"
#include "ui/windows/text_scale.h"

#include <gtest/gtest.h>

#include <commctrl.h>

namespace veldran {
namespace {

using dialog_script::notify;
using dialog_script::Script;
using dialog_script::textOf;

constexpr int kRadar = 15;

std::intptr_t PLUGIN16_CALL ignoreCommand(HostTaskInfo*, std::uint32_t, std::uintptr_t, std::intptr_t) {
    return 1;
}

void showEffect(HWND dialog, int effect) {
    SendDlgItemMessageA(dialog, kControlEffect, CB_SETCURSEL, static_cast<WPARAM>(effect), 0);
    notify(dialog, kControlEffect, CBN_SELCHANGE);
}

class MainDialog : public testing::Test {
protected:
    void SetUp() override {
        setModuleInstance(GetModuleHandleA(nullptr));
        INITCOMMONCONTROLSEX classes{sizeof classes, ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES};
        InitCommonControlsEx(&classes);
        host_.message = ignoreCommand;
        host_.flags = kDelayInHundredths;
    }
    void TearDown() override { forceTextSize(0); }

    void session(const Script& script, int percent = 100) {
        forceTextSize(percent);
        const VisualStyles looks;
        const CurrentFonts fonts;
        dialog_script::drive(script, [this] { return runMainDialog(nullptr, &host_); });
    }

    recording::SettingsFolder folder_{std::nullopt};
    HostParams host_{};
};

TEST_F(MainDialog, EveryPanelReadsWellAtEveryTextSize) {
    const auto showsText = [](HWND button) { return !parameterOfControl(GetDlgCtrlID(button)); };
    for (const int percent : {100, 150, 200})
        session(
            [&](HWND dialog) {
                for (int effect = 0; effect < kEffectCount; ++effect) {
                    showEffect(dialog, effect);
                    SCOPED_TRACE(testing::Message() << effectRows()[effect].name << " at " << percent);
                    // "&Test" and "&Transparent" are both known by their T.
                    EXPECT_EQ(dialog_script::layoutFaults(dialog, "T", showsText), std::vector<std::string>());
                }
            },
            percent);
}

// What a person enters into the `index`-th control, and what the setting must hold afterwards.
struct Entry {
    std::string text;
    std::string kept; // numbers in decimal
};

Entry entryFor(const ParameterRow& row, int index, const PlugInSettings& before) {
    const auto number = [](std::uint32_t value) { return Entry{std::to_string(value), std::to_string(value)}; };
    switch (row.kind) {
    case ParameterKind::Check:
        return number(before.number(row.setting) == 0 ? 1 : 0);
    case ParameterKind::Choice:
        return number(2);
    case ParameterKind::Colour:
        return number(0x010203u * static_cast<std::uint32_t>(index % 80));
    case ParameterKind::Curve:
        return number(packCurve({index % 32, 31, 0, 7, index % 5}));
    case ParameterKind::Number: {
        const NumberRange range = parseRange(row.range);
        const std::string minimum = std::to_string(range.minimum);
        const std::string maximum = std::to_string(range.maximum);
        const std::string next = std::to_string(range.minimum + 1);
        const Entry entries[] = {{next, next},           {"99999999999", maximum}, {"", minimum},
                                 {"no number", minimum}, {"-5", minimum},          {std::string(3000, '7'), maximum}};
        return entries[index % 6];
    }
    default:
        const std::string path = "C:\\folder\\" + std::to_string(index) + std::string(index % 2 == 0 ? 4 : 200, 'x');
        return {path, path};
    }
}

void enter(HWND dialog, const BoundParameter& parameter, const std::string& text) {
    const HWND control = GetDlgItem(dialog, parameter.control);
    switch (parameter.row->kind) {
    case ParameterKind::Check:
        SendMessageA(control, BM_CLICK, 0, 0);
        break;
    case ParameterKind::Choice:
        SendMessageA(control, CB_SETCURSEL, 2, 0);
        notify(dialog, parameter.control, CBN_SELCHANGE);
        break;
    case ParameterKind::Colour:
        setColour(dialog, parameter.control, std::stoul(text));
        break;
    case ParameterKind::Curve:
        setCurveValue(control, std::stoul(text));
        break;
    case ParameterKind::Number:
        SendMessageA(control, EM_SETSEL, 0, -1);
        SendMessageA(control, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
        break;
    default:
        SetWindowTextA(control, text.c_str());
    }
}

std::string keptValue(Setting setting) {
    return settingRow(setting).isText() ? pluginSettings().text(setting)
                                        : std::to_string(pluginSettings().number(setting));
}

int effectOf(int control) {
    for (int effect = 0; effect < kEffectCount; ++effect)
        if (effectRows()[effect].firstControl <= control && control <= effectRows()[effect].lastControl)
            return effect;
    return -1;
}

template <class Visit>
void forEachSetting(Visit visit) {
    int index = 0;
    for (const OptionRow& option : kOutputOptions)
        if (option.control != kControlEffect)
            visit(BoundParameter{&option.parameter, option.labelControl, option.control}, ++index);
    for (int effect = 0; effect < kEffectCount; ++effect)
        for (const BoundParameter& parameter : panelOf(effect))
            if (parameter.row->setting != Setting::None)
                visit(parameter, ++index);
}

TEST_F(MainDialog, WhatIsEnteredAnywhereIsKept) {
    const int bezel = panelOf(7).back().control; // a colour that lasts as long as the process
    PlugInSettings before;
    session([&](HWND dialog) {
        before = pluginSettings();
        forEachSetting([&](const BoundParameter& parameter, int index) {
            if (!IsWindowVisible(GetDlgItem(dialog, parameter.control)))
                showEffect(dialog, effectOf(parameter.control));
            enter(dialog, parameter, entryFor(*parameter.row, index, before).text);
        });
        setColour(dialog, bezel, 0x123456);
        showEffect(dialog, kRadar);
    });
    const auto expectKept = [&] {
        EXPECT_EQ(pluginSettings().number(Setting::MainEffect), static_cast<std::uint32_t>(kRadar));
        forEachSetting([&](const BoundParameter& parameter, int index) {
            EXPECT_EQ(keptValue(parameter.row->setting), entryFor(*parameter.row, index, before).kept)
                << settingRow(parameter.row->setting).key;
        });
    };
    expectKept();
    const std::string file = folder_.read();
    // Reads the file, fills every control and writes it again.
    session([&](HWND dialog) { EXPECT_EQ(readColour(dialog, bezel), 0x123456u); });
    const auto undated = [](std::string text) { return text.erase(text.find(";Last updated"), 40); };
    EXPECT_EQ(undated(folder_.read()), undated(file));
    expectKept();
}

void expectDefaultsOfTheRadarAlone(HWND dialog) {
    showEffect(dialog, kRadar);
    for (const int control : {340, 378, int{kControlDelay}}) // the radar's size, the tachometer's
        SetDlgItemTextA(dialog, control, "99");
    SendDlgItemMessageA(dialog, 348, LB_RESETCONTENT, 0, 0);
    notify(dialog, kControlDefaults, BN_CLICKED);
    EXPECT_EQ(textOf(dialog, 340), "160");
    EXPECT_EQ(SendDlgItemMessageA(dialog, 348, LB_GETCOUNT, 0, 0), 7);
    EXPECT_EQ(textOf(dialog, 378), "99");
    EXPECT_EQ(textOf(dialog, kControlDelay), "99");
}

void expectSpaceOpensTheMarkers(HWND dialog) {
    const HWND list = GetDlgItem(dialog, 348);
    EXPECT_EQ(SendMessageA(dialog, WM_VKEYTOITEM, MAKEWPARAM(VK_DOWN, 0), reinterpret_cast<LPARAM>(list)), -1);
    bool opened = false;
    dialog_script::drive([&](HWND editor) { opened = editor != dialog; },
                         [&] { return SendMessageA(list, WM_KEYDOWN, VK_SPACE, 0); });
    EXPECT_TRUE(opened);
}

void expectAMissingFileInThePreview(HWND dialog) {
    showEffect(dialog, 3); // a meter
    const auto panel = panelOf(3);
    const int sound = std::ranges::find_if(panel, [](const BoundParameter& parameter) {
                          return parameter.row->kind == ParameterKind::PlayableSound;
                      })->control;
    const auto picture = [&](const std::string& path) {
        SetDlgItemTextA(dialog, sound, path.c_str());
        SendMessageA(dialog, WM_TIMER, 1, 0);
        const HWND preview = GetDlgItem(dialog, kControlPreview);
        const DRAWITEMSTRUCT whole{ODT_STATIC, kControlPreview, 0, 0, 0, preview, nullptr, {}, 0};
        const auto pixels = dialog_script::pixelsOf(whole, {276, 200}, [dialog](const DRAWITEMSTRUCT& item) {
            SendMessageA(dialog, WM_DRAWITEM, kControlPreview, reinterpret_cast<LPARAM>(&item));
        });
        // Below it a meter says so, whose picture needs no file.
        return std::pair(pixels, textOf(dialog, kControlSummary));
    };
    char program[MAX_PATH] = ""; // a file that is surely there
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    const auto missing = picture("C:\\nowhere\\a.wav");
    // The name of what is missing is part of it.
    for (const std::string& other :
         {std::string(program), std::string("C:\\nowhere\\b.wav"), std::string(), std::string(400, 'x')})
        EXPECT_TRUE(missing != picture(other)) << other;
}

TEST_F(MainDialog, DefaultsSpaceAndMissingFiles) {
    session([](HWND dialog) {
        expectDefaultsOfTheRadarAlone(dialog);
        expectSpaceOpensTheMarkers(dialog);
        expectAMissingFileInThePreview(dialog);
    });
    EXPECT_EQ(pluginSettings().text(Setting::MainVUAnalogSquareSound), std::string(kTextLimit, 'x'));
}

} // namespace
} // namespace veldran
