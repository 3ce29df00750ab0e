// Opens the main dialog with each effect, then the dialogs that it opens, at each text size, and writes a picture of
// every one: screenshots FOLDER. Works through a timer while the dialogs run their own loops; never builds anything.
#include "base/windows/module.h"
#include "base/windows/visual_styles.h"
#include "instruments/effect_list.h"
#include "settings/output_options.h"
#include "ui/windows/main_dialog.h"
#include "ui/windows/panel.h"
#include "ui/windows/plugin_fonts.h"
#include "ui/windows/text_scale.h"

#include "photograph.h"

#include <cstdio>
#include <string>
#include <vector>

#include <commctrl.h>
#include <windows.h>

using namespace veldran;

namespace {

constexpr int kTextSizes[] = {100, 150};
constexpr int kMeter = 3;    // an instrument with a sound
constexpr UINT kPause = 500; // milliseconds until a dialog has painted itself and its preview

// One picture: the effect that the main dialog shows, and the control that is activated to open another dialog.
struct Shot {
    std::string name;
    int effect;
    int control; // 0: the main dialog itself
    int code;    // the notification that opens the dialog; kRightClick for a click of the right button
};

constexpr int kRightClick = -1;

enum class Phase { Show, Photograph, Close };

struct Session {
    std::string folder;
    std::vector<Shot> shots;
    std::size_t current = 0;
    Phase phase = Phase::Show;
    HWND dialog = nullptr;
} session;

std::intptr_t PLUGIN16_CALL ignoreCommand(HostTaskInfo*, std::uint32_t, std::uintptr_t, std::intptr_t) {
    return 1;
}

std::vector<Shot> allShots() {
    std::vector<Shot> shots;
    for (int effect = 0; effect < kEffectCount; ++effect) {
        char number[8];
        std::snprintf(number, sizeof number, "%02d", effect);
        shots.push_back({std::string("effect-") + number, effect, 0, 0});
        for (const BoundParameter& parameter : panelOf(effect)) {
            if (parameter.row->kind == ParameterKind::Markers)
                shots.push_back({std::string("editor-") + number, effect, parameter.control, LBN_DBLCLK});
            if (parameter.row->kind == ParameterKind::Points)
                shots.push_back({std::string("editor-") + number, effect, parameter.control, BN_CLICKED});
        }
    }
    for (const BoundParameter& parameter : panelOf(kMeter)) {
        if (parameter.row->kind != ParameterKind::PlayableSound)
            continue;
        shots.push_back({"sound-chooser", kMeter, parameter.control, BN_CLICKED});
        shots.push_back({"message", kMeter, parameter.control, kRightClick}); // there is no such sound
    }
    shots.push_back({"advanced", 15, kControlAdvanced, BN_CLICKED});
    return shots;
}

void show(const Shot& shot) {
    SendDlgItemMessageA(session.dialog, kControlEffect, CB_SETCURSEL, static_cast<WPARAM>(shot.effect), 0);
    SendMessageA(session.dialog, WM_COMMAND, MAKEWPARAM(kControlEffect, CBN_SELCHANGE), 0);
    const HWND control = shot.control != 0 ? GetDlgItem(session.dialog, shot.control) : nullptr;
    if (control != nullptr && shot.code == kRightClick)
        PostMessageA(session.dialog, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(control), 0);
    else if (control != nullptr)
        PostMessageA(session.dialog, WM_COMMAND, MAKEWPARAM(shot.control, shot.code),
                     reinterpret_cast<LPARAM>(control));
}

void CALLBACK onTick(HWND, UINT, UINT_PTR, DWORD) {
    if (session.dialog == nullptr)
        return;
    if (session.current == session.shots.size()) {
        PostMessageA(session.dialog, WM_COMMAND, IDCANCEL, 0);
        return;
    }
    const Shot& shot = session.shots[session.current];
    const HWND popup = GetLastActivePopup(session.dialog);
    switch (session.phase) {
    case Phase::Show:
        show(shot);
        session.phase = Phase::Photograph;
        break;
    case Phase::Photograph:
        screenshots::photograph(popup,
                                session.folder + "/" + shot.name + "-" + std::to_string(textSizePercent()) + ".bmp");
        session.phase = Phase::Close;
        break;
    case Phase::Close:
        if (popup != session.dialog)
            PostMessageA(popup, WM_COMMAND, shot.code == kRightClick ? IDOK : IDCANCEL, 0);
        ++session.current;
        session.phase = Phase::Show;
        break;
    }
}

// The first window to become active is the main dialog, once it stands.
LRESULT CALLBACK onActivation(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_ACTIVATE && session.dialog == nullptr)
        session.dialog = reinterpret_cast<HWND>(wParam);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void photographAll(int percent) {
    forceTextSize(percent);
    const VisualStyles looks;
    const CurrentFonts fonts;
    session.current = 0;
    session.dialog = nullptr;
    HostParams host{};
    host.size = sizeof host;
    host.version = kPluginInterfaceVersion;
    host.message = ignoreCommand;
    host.flags = kDelayInHundredths;
    const UINT_PTR timer = SetTimer(nullptr, 0, kPause, onTick);
    runMainDialog(nullptr, &host);
    KillTimer(nullptr, timer);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: screenshots FOLDER\n");
        return 2;
    }
    session.folder = argv[1];
    session.shots = allShots();
    setModuleInstance(GetModuleHandleA(nullptr));
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    const HHOOK hook = SetWindowsHookExA(WH_CBT, onActivation, nullptr, GetCurrentThreadId());
    for (const int percent : kTextSizes)
        photographAll(percent);
    UnhookWindowsHookEx(hook);
    return 0;
}
