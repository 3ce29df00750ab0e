// The advanced dialog as a person uses it: opened for real and driven from a timer inside its modal loop. Also push
// buttons of every look, and what the host is asked when help is wanted.
#include "base/windows/module.h"
#include "dialog_script.h"
#include "object_count.h"
#include "settings/windows/settings_store.h"
#include "ui/windows/controls/push_button.h"
#include "ui/windows/editors/advanced_dialog.h"
#include "ui/windows/help.h"
#include "ui/windows/text_scale.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include <commctrl.h>

namespace veldran {
namespace {

using dialog_script::Script;
using dialog_script::textOf;

std::string askedDocument;
std::intptr_t hostAnswer = 1;

std::intptr_t PLUGIN16_CALL answerHost(HostTaskInfo*, std::uint32_t command, std::uintptr_t, std::intptr_t lParam) {
    if (command == kHostShowHelp)
        askedDocument = reinterpret_cast<const char*>(lParam);
    return hostAnswer;
}

// The control that follows the label with this text, as a person finds it; an "&" in the label does not count.
HWND behindLabel(HWND dialog, const std::string& label) {
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        std::string text = textOf(child);
        std::erase(text, '&');
        if (text == label)
            return GetWindow(child, GW_HWNDNEXT);
    }
    return nullptr;
}

class Advanced : public testing::Test {
protected:
    void SetUp() override {
        setModuleInstance(GetModuleHandleA(nullptr));
        InitCommonControls();
        forceTextSize(100);
        pluginSettings().reset();
        host_.message = answerHost;
        askedDocument.clear();
        hostAnswer = 1;
    }
    void TearDown() override { forceTextSize(0); }

    bool drive(const Script& script) {
        return dialog_script::drive(script, [this] { return runAdvancedDialog(nullptr, &host_); });
    }

    HostParams host_{};
};

TEST_F(Advanced, OkKeepsWhatWasTypedWithinItsLimits) {
    const struct {
        const char *label, *typed;
        Setting setting;
        std::uint32_t stored;
    } cases[] = {
        {"VU etch highlight:", "500", Setting::DigitalVUEtchHighlight, 400},
        {"VU etch shadow:", "", Setting::DigitalVUEtchShadow, 1},
        {"VU interchannel space:", "256", Setting::AdvancedDigitalVUInterchannelHorizontal, 256},
        {"Altimeter barometric pressure:", "4294967295", Setting::AdvancedAltimeterBarometricPressure, 400},
    };
    const auto type = [&](HWND dialog) {
        for (const auto& c : cases)
            SetWindowTextA(behindLabel(dialog, c.label), c.typed);
        SetWindowTextA(behindLabel(dialog, "Mono label:"), "one & only");
        SetWindowTextA(behindLabel(dialog, "Left label:"), std::string(300, 'x').c_str());
        CheckDlgButton(dialog, GetDlgCtrlID(behindLabel(dialog, "Font:")) + 1, BST_UNCHECKED);
    };
    EXPECT_FALSE(drive(type)); // cancelled
    EXPECT_EQ(pluginSettings().number(Setting::DigitalVUEtchHighlight), 266u);
    EXPECT_EQ(pluginSettings().text(Setting::LabelLeft), "LEFT");
    EXPECT_TRUE(drive([&](HWND dialog) {
        type(dialog);
        SendMessageA(dialog, WM_COMMAND, IDOK, 0);
    }));
    for (const auto& c : cases)
        EXPECT_EQ(pluginSettings().number(c.setting), c.stored) << c.label;
    EXPECT_EQ(pluginSettings().number(Setting::DigitalVURedRange), 220u); // untouched: its first value
    EXPECT_EQ(pluginSettings().text(Setting::AdvancedLabelMono), "one & only");
    EXPECT_EQ(pluginSettings().text(Setting::LabelLeft), std::string(259, 'x'));
    EXPECT_EQ(pluginSettings().number(Setting::InstrumentFontBold), 0u);
}

TEST_F(Advanced, FontListShowsFamiliesInOrderAndKeepsAMissingFont) {
    pluginSettings().setText(Setting::InstrumentFontName, "No Such Face");
    std::vector<std::string> names;
    EXPECT_TRUE(drive([&](HWND dialog) {
        const HWND list = behindLabel(dialog, "Font:");
        EXPECT_EQ(SendMessageA(list, CB_GETCURSEL, 0, 0), CB_ERR);
        for (LRESULT i = 0; i < SendMessageA(list, CB_GETCOUNT, 0, 0); ++i) {
            char name[LF_FACESIZE * 4] = "";
            SendMessageA(list, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(name));
            names.emplace_back(name);
        }
        SendMessageA(dialog, WM_COMMAND, IDOK, 0);
    }));
    EXPECT_EQ(pluginSettings().text(Setting::InstrumentFontName), "No Such Face");
    ASSERT_GE(names.size(), 2u);
    for (std::size_t i = 1; i < names.size(); ++i)
        EXPECT_LE(lstrcmpiA(names[i - 1].c_str(), names[i].c_str()), 0) << names[i];

    std::string shortened = names[1].substr(0, 3); // in capitals: case does not count
    CharUpperBuffA(shortened.data(), static_cast<DWORD>(shortened.size()));
    pluginSettings().setText(Setting::InstrumentFontName, shortened);
    drive([&](HWND dialog) {
        const std::string shown = textOf(behindLabel(dialog, "Font:"));
        EXPECT_EQ(lstrcmpiA(shown.substr(0, 3).c_str(), shortened.c_str()), 0) << shown;
    });
}

TEST_F(Advanced, ReadsWellAtEveryTextSize) {
    for (const int percent : {100, 150, 200}) {
        forceTextSize(percent);
        drive([&](HWND dialog) {
            EXPECT_EQ(dialog_script::layoutFaults(dialog), std::vector<std::string>()) << percent;
        });
    }
}

TEST_F(Advanced, EnterPressesTheFocusedDrawnButton) {
    for (const std::uint32_t look : {0u, 3u}) {
        host_.buttonStyle = look;
        const auto defaults = [](HWND dialog) {
            std::set<int> found;
            for (const int id : {IDOK, IDCANCEL, 9})
                if (SendDlgItemMessageA(dialog, id, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON)
                    found.insert(id);
            return found;
        };
        const bool accepted = drive([&](HWND dialog) {
            EXPECT_EQ(defaults(dialog), std::set<int>{IDOK}) << look;
            const HWND cancel = GetDlgItem(dialog, IDCANCEL);
            SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(cancel), TRUE);
            EXPECT_EQ(defaults(dialog), std::set<int>{IDCANCEL}) << look;
            MSG enter{cancel, WM_KEYDOWN, VK_RETURN, 1, 0, {}};
            IsDialogMessageA(dialog, &enter);
        });
        EXPECT_FALSE(accepted) << look;
        EXPECT_TRUE(drive([](HWND dialog) {
            MSG enter{GetFocus(), WM_KEYDOWN, VK_RETURN, 1, 0, {}};
            IsDialogMessageA(dialog, &enter);
        })) << look;
    }
}

TEST_F(Advanced, OpeningsLeaveNothingBehind) {
    host_.buttonStyle = 3;
    const auto open = [this] { drive(dialog_script::redraw); };
    open();
    EXPECT_FALSE(object_count::leavesObjects(5, 10, open));
}

TEST_F(Advanced, EveryLookShowsEveryState) {
    const HWND button = CreateWindowA("BUTTON", "&OK", WS_POPUP | BS_OWNERDRAW, 0, 0, 60, 24, nullptr, nullptr,
                                      moduleInstance(), nullptr);
    const auto picture = [button](std::uint32_t look, UINT state, bool isDefault = false) {
        const DRAWITEMSTRUCT item{ODT_BUTTON, 0, 0, 0, state, button, nullptr, {}, 0};
        return dialog_script::pixelsOf(item, {60, 24},
                                       [&](const DRAWITEMSTRUCT& drawn) { drawPushButton(drawn, look, isDefault); });
    };
    std::set<std::vector<COLORREF>> pictures;
    for (const std::uint32_t look : {1u, 2u, 3u, 4u}) {
        EXPECT_EQ(pushButtonStyle(look), static_cast<DWORD>(BS_OWNERDRAW));
        for (const UINT state : {0u, UINT{ODS_SELECTED}, UINT{ODS_DISABLED}, UINT{ODS_FOCUS}})
            EXPECT_TRUE(pictures.insert(picture(look, state)).second) << look << ' ' << state;
        EXPECT_TRUE(pictures.insert(picture(look, 0, true)).second) << look << " default";
    }
    EXPECT_TRUE(picture(5, 0) == picture(0xFFFFFFFF, 0));
    EXPECT_EQ(pushButtonStyle(0), static_cast<DWORD>(BS_PUSHBUTTON));
    DestroyWindow(button);
}

TEST_F(Advanced, HelpAsksTheHost) {
    showHelp(nullptr, &host_, nullptr);
    EXPECT_EQ(askedDocument, "VELDRap1.HTML");
    showHelp(nullptr, &host_, std::string(300, 't').c_str());
    EXPECT_EQ(askedDocument, "VELDRap1.HTML#" + std::string(246, 't')); // 260 in all
    drive([](HWND dialog) { SendMessageA(GetDlgItem(dialog, 9), BM_CLICK, 0, 0); });
    EXPECT_EQ(askedDocument, "VELDRap1.HTML#ADVANCED");
}

TEST_F(Advanced, HelpSaysWhenTheHostCannotShowIt) {
    hostAnswer = 0;
    HostParams deaf{};
    for (HostParams* host : {&host_, &deaf, static_cast<HostParams*>(nullptr)}) {
        std::string said;
        const Script read = [&said](HWND message) { said = textOf(message, 20); };
        dialog_script::drive(read, [host] { showHelp(nullptr, host, "RADAR"); });
        EXPECT_EQ(said, "There has been an error displaying the Help document.");
    }
}

} // namespace
} // namespace veldran
