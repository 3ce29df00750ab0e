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

using dialog_script::Script;
using dialog_script::textOf;

constexpr int kRadar = 15;

std::intptr_t PLUGIN16_CALL ignoreCommand(HostTaskInfo*, std::uint32_t, std::uintptr_t, std::intptr_t) {
    return 1;
}

void notify(HWND dialog, int control, int code) {
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(control, code), reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
}

void showEffect(HWND dialog, int effect) {
    SendDlgItemMessageA(dialog, kControlEffect, CB_SETCURSEL, static_cast<WPARAM>(effect), 0);
    notify(dialog, kControlEffect, CBN_SELCHANGE);
}

std::string controlText(HWND dialog, int control) {
    return textOf(GetDlgItem(dialog, control));
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
    std::string text; // of fields and paths
    std::uint32_t number;
};

Entry entryFor(const ParameterRow& row, int index) {
    if (row.kind == ParameterKind::Number) {
        const NumberRange range = parseRange(row.range);
        const auto minimum = static_cast<std::uint32_t>(range.minimum);
        const auto maximum = static_cast<std::uint32_t>(range.maximum);
        const Entry entries[] = {{std::to_string(minimum + 1), minimum + 1},
                                 {"99999999999", maximum},
                                 {"", minimum},
                                 {"no number", minimum},
                                 {"-5", minimum},
                                 {std::string(100000, '7'), maximum}};
        return entries[index % 6];
    }
    if (row.kind == ParameterKind::Curve)
        return {"", packCurve({index % 32, 31, 0, 7, index % 5})};
    if (row.kind == ParameterKind::Colour)
        return {"", 0x010203u * static_cast<std::uint32_t>(index % 80)};
    return {"C:\\folder\\" + std::to_string(index) + std::string(index % 2 == 0 ? 4 : 200, 'x'), 0};
}

void enter(HWND dialog, const BoundParameter& parameter, const Entry& entry) {
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
        setColour(dialog, parameter.control, entry.number);
        break;
    case ParameterKind::Curve:
        setCurveValue(control, entry.number);
        break;
    case ParameterKind::Number:
        SendMessageA(control, EM_SETSEL, 0, -1);
        SendMessageA(control, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(entry.text.c_str()));
        break;
    default:
        SetWindowTextA(control, entry.text.c_str());
    }
}

void expectKept(const ParameterRow& row, const Entry& entry, const PlugInSettings& before) {
    const PlugInSettings& now = pluginSettings();
    if (row.kind == ParameterKind::Check)
        EXPECT_EQ(now.number(row.setting), before.number(row.setting) == 0 ? 1u : 0u);
    else if (row.kind == ParameterKind::Choice)
        EXPECT_EQ(now.number(row.setting), 2u);
    else if (row.kind == ParameterKind::Number || row.kind == ParameterKind::Curve || row.kind == ParameterKind::Colour)
        EXPECT_EQ(now.number(row.setting), entry.number);
    else
        EXPECT_EQ(now.text(row.setting), entry.text);
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
    for (int effect = 0; effect < kEffectCount; ++effect)
        for (const BoundParameter& parameter : panelOf(effect))
            if (parameter.row->setting != Setting::None)
                visit(parameter, ++index);
}

TEST_F(MainDialog, WhatIsEnteredAnywhereIsKept) {
    PlugInSettings before;
    session([&](HWND dialog) {
        before = pluginSettings();
        forEachSetting([&](const BoundParameter& parameter, int index) {
            if (!IsWindowVisible(GetDlgItem(dialog, parameter.control)))
                showEffect(dialog, effectOf(parameter.control));
            enter(dialog, parameter, entryFor(*parameter.row, index));
        });
    });
    forEachSetting([&](const BoundParameter& parameter, int index) {
        SCOPED_TRACE(settingRow(parameter.row->setting).key);
        expectKept(*parameter.row, entryFor(*parameter.row, index), before);
    });
    const std::string file = folder_.read();
    const PlugInSettings kept = pluginSettings();
    session([](HWND) {}); // reads the file, fills every control and writes it again
    const auto undated = [](std::string text) { return text.erase(text.find(";Last updated"), 40); };
    EXPECT_EQ(undated(folder_.read()), undated(file));
    forEachSetting([&](const BoundParameter& parameter, int) {
        const Setting setting = parameter.row->setting;
        EXPECT_EQ(pluginSettings().number(setting), kept.number(setting)) << settingRow(setting).key;
    });
}

TEST_F(MainDialog, DefaultsResetTheShownInstrumentAlone) {
    session([](HWND dialog) {
        showEffect(dialog, kRadar);
        SetDlgItemTextA(dialog, 340, "99"); // the radar's size
        SetDlgItemTextA(dialog, 378, "99"); // the tachometer's
        SetDlgItemTextA(dialog, kControlDelay, "9");
        SendDlgItemMessageA(dialog, 348, LB_RESETCONTENT, 0, 0);
        notify(dialog, kControlDefaults, BN_CLICKED);
        EXPECT_EQ(controlText(dialog, 340), "160");
        EXPECT_EQ(SendDlgItemMessageA(dialog, 348, LB_GETCOUNT, 0, 0), 7);
        EXPECT_EQ(controlText(dialog, 378), "99");
        EXPECT_EQ(controlText(dialog, kControlDelay), "9");
    });
}

TEST_F(MainDialog, TheBezelColourLastsAsLongAsTheProcess) {
    const int bezel = panelOf(7).back().control;
    session([&](HWND dialog) { setColour(dialog, bezel, 0x123456); });
    session([&](HWND dialog) { EXPECT_EQ(readColour(dialog, bezel), 0x123456u); });
}

TEST_F(MainDialog, AMissingFileIsNamedInThePreview) {
    session([](HWND dialog) {
        showEffect(dialog, 3); // a meter
        int sound = 0;
        for (const BoundParameter& parameter : panelOf(3))
            if (parameter.row->kind == ParameterKind::PlayableSound)
                sound = parameter.control;
        const HWND preview = GetDlgItem(dialog, kControlPreview);
        const auto picture = [&](const char* path) {
            SetDlgItemTextA(dialog, sound, path);
            SendMessageA(dialog, WM_TIMER, 1, 0);
            const HDC screen = GetDC(preview);
            const HDC dc = CreateCompatibleDC(screen);
            const HBITMAP bitmap = CreateCompatibleBitmap(screen, 276, 200);
            const HGDIOBJ old = SelectObject(dc, bitmap);
            DRAWITEMSTRUCT item{ODT_STATIC, kControlPreview, 0, 0, 0, preview, dc, {0, 0, 276, 200}, 0};
            SendMessageA(dialog, WM_DRAWITEM, kControlPreview, reinterpret_cast<LPARAM>(&item));
            std::string pixels(276 * 200 * 4, '\0');
            GetBitmapBits(bitmap, static_cast<LONG>(pixels.size()), pixels.data());
            SelectObject(dc, old);
            DeleteObject(bitmap);
            DeleteDC(dc);
            ReleaseDC(preview, screen);
            char below[512] = ""; // where a meter says it, whose picture needs no file
            GetDlgItemTextA(dialog, kControlSummary, below, sizeof below);
            return pixels + below;
        };
        char program[MAX_PATH] = ""; // a file that is surely there
        GetModuleFileNameA(nullptr, program, MAX_PATH);
        const std::string there = picture(program);
        const std::string missing = picture("C:\\nowhere\\a.wav");
        EXPECT_NE(missing, there);
        EXPECT_NE(missing, picture("C:\\nowhere\\b.wav")); // its name is part of the picture
        EXPECT_NE(missing, picture(""));
        EXPECT_NE(missing, picture(std::string(400, 'x').c_str()));
    });
    EXPECT_EQ(pluginSettings().text(Setting::MainVUAnalogSquareSound), std::string(kTextLimit, 'x'));
}

TEST_F(MainDialog, SpaceInTheMarkerListOpensItsEditor) {
    bool opened = false;
    session([&](HWND dialog) {
        showEffect(dialog, kRadar);
        const HWND list = GetDlgItem(dialog, 348);
        EXPECT_EQ(SendMessageA(dialog, WM_VKEYTOITEM, MAKEWPARAM(VK_DOWN, 0), reinterpret_cast<LPARAM>(list)), -1);
        dialog_script::drive([&](HWND editor) { opened = editor != dialog; },
                             [&] { return SendMessageA(list, WM_KEYDOWN, VK_SPACE, 0); });
    });
    EXPECT_TRUE(opened);
}

} // namespace
} // namespace veldran
