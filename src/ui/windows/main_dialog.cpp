// Dispatches the dialog's messages to functions with names.
#include "ui/windows/main_dialog.h"

#include "base/windows/host_link.h"
#include "base/windows/memory_reserve.h"
#include "base/windows/module.h"
#include "host/windows/build_driver.h"
#include "instruments/windows/effect_registry.h"
#include "resources/resource_ids.h"
#include "settings/output_options.h"
#include "settings/windows/default_paths.h"
#include "settings/windows/settings_store.h"
#include "ui/help_topics.h"
#include "ui/windows/controls/curve_control.h"
#include "ui/windows/controls/path_control.h"
#include "ui/windows/controls/push_button.h"
#include "ui/windows/controls/tool_tips.h"
#include "ui/windows/dialog_guard.h"
#include "ui/windows/editors/advanced_dialog.h"
#include "ui/windows/help.h"
#include "ui/windows/output_panel.h"
#include "ui/windows/panel.h"
#include "ui/windows/preview.h"

#include <optional>

#include <mmsystem.h>

namespace veldran {
namespace {

constexpr UINT_PTR kPreviewTimer = 1;
constexpr UINT_PTR kPlayTimer = 2;
constexpr UINT kPreviewPause = 120; // milliseconds after the last change: typing stays fluid
constexpr char kStateProperty[] = "VeldranMainDialog";

// What one open dialog keeps besides its controls. The window's user data is the host's parameter block.
struct DialogState {
    Preview preview;
    OutputEnabling enabling;
    bool filling = true; // controls are being filled by the program: changes are no edits
    bool busy = false;   // drawing or building: what a host lets through from inside a command is left alone
};

class BusyScope {
public:
    explicit BusyScope(DialogState& state) : state_(state) { state_.busy = true; }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;
    ~BusyScope() { state_.busy = false; }

private:
    DialogState& state_; // lives as long as the dialog's modal loop, also when the host destroys the window
};

DialogState* stateOf(HWND dialog) {
    return static_cast<DialogState*>(GetPropA(dialog, kStateProperty));
}

HostParams* hostOf(HWND dialog) {
    return reinterpret_cast<HostParams*>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
}

void stopPlaying(HWND dialog) {
    KillTimer(dialog, kPlayTimer);
    stateOf(dialog)->preview.stop();
    SetDlgItemTextA(dialog, kControlPlay, "&Play");
}

// Any change ends playing and shows in the still picture once no other has followed for a moment.
void schedulePreview(HWND dialog) {
    stopPlaying(dialog);
    SetTimer(dialog, kPreviewTimer, kPreviewPause, nullptr);
}

void showSelectedEffect(HWND dialog) {
    stopSounds();
    showSelectedPanel(dialog);
    schedulePreview(dialog);
}

void onInitialise(HWND dialog, HostParams* host, DialogState* state) {
    SetWindowLongPtrA(dialog, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(host));
    if (!SetPropA(dialog, kStateProperty, state))
        throwOutOfMemory();
    loadSettings();
    fillDefaultPaths(pluginSettings(), host->flags, DefaultPaths::WhereEmpty);
    createOutputControls(dialog, host->buttonStyle);
    fillOutputControls(dialog);
    fillPanels(dialog);
    layOutMainDialog(dialog);
    attachToolTips(dialog);
    stateOf(dialog)->enabling.refresh(dialog);
    state->filling = false;
    showSelectedEffect(dialog);
    SetFocus(GetDlgItem(dialog, kControlEffect));
}

void onDestroy(HWND dialog) {
    const DialogState* state = stateOf(dialog);
    if (state == nullptr)
        return; // it was never set up
    stopPlaying(dialog);
    stopSounds();
    KillTimer(dialog, kPreviewTimer);
    if (!state->filling) {
        saveOutputControls(dialog);
        savePanels(dialog);
        saveSettings();
    }
    RemovePropA(dialog, kStateProperty);
}

// A person cannot use the dialog meanwhile.
class DisabledScope {
public:
    explicit DisabledScope(HWND dialog) : dialog_(dialog) { EnableWindow(dialog, FALSE); }
    DisabledScope(const DisabledScope&) = delete;
    DisabledScope& operator=(const DisabledScope&) = delete;
    ~DisabledScope() { EnableWindow(dialog_, TRUE); }

private:
    HWND dialog_;
};

bool buildInScope(HWND dialog, BuildKind kind) {
    HostParams* host = hostOf(dialog);
    const BusyScope busy(*stateOf(dialog));
    const DisabledScope disabled(dialog);
    sendToHost(host, nullptr, kHostBuildBegins, 0, 0);
    return buildAnimation(dialog, host, kind);
}

void onBuild(HWND dialog, BuildKind kind) {
    stopPlaying(dialog);
    stopSounds();
    stateOf(dialog)->enabling.refresh(dialog);
    const bool done = buildInScope(dialog, kind);
    if (done && kind == BuildKind::Real)
        EndDialog(dialog, IDOK);
    else
        SetActiveWindow(dialog);
}

void onPlay(HWND dialog) {
    Preview& preview = stateOf(dialog)->preview;
    if (preview.isPlaying()) {
        schedulePreview(dialog);
        return;
    }
    KillTimer(dialog, kPreviewTimer);
    const BusyScope busy(*stateOf(dialog));
    if (!preview.play(dialog, hostOf(dialog), selectedEffect(dialog)))
        return;
    SetDlgItemTextA(dialog, kControlPlay, "Sto&p");
    SetTimer(dialog, kPlayTimer, USER_TIMER_MINIMUM, nullptr);
}

void onDefaults(HWND dialog) {
    resetPanel(dialog, selectedEffect(dialog), hostOf(dialog)->flags);
    schedulePreview(dialog);
}

void onAdvanced(HWND dialog) {
    stopPlaying(dialog);
    if (runAdvancedDialog(dialog, hostOf(dialog)))
        schedulePreview(dialog);
}

void onHelp(HWND dialog) {
    showHelp(dialog, hostOf(dialog), helpTopicOf(selectedEffect(dialog)));
}

// What a notification says about a control: that its value has changed, or that the person wants to edit it.
enum class ControlEvent : std::uint8_t { None, Changed, Activated };

ControlEvent eventOf(const BoundParameter& parameter, int code) {
    switch (parameter.row->kind) {
    case ParameterKind::Number:
    case ParameterKind::Curve:
        return code == EN_CHANGE ? ControlEvent::Changed : ControlEvent::None;
    case ParameterKind::Check:
        return code == BN_CLICKED ? ControlEvent::Changed : ControlEvent::None;
    case ParameterKind::Choice:
        return code == CBN_SELCHANGE ? ControlEvent::Changed : ControlEvent::None;
    case ParameterKind::Markers:
        return code == LBN_DBLCLK ? ControlEvent::Activated : ControlEvent::None;
    default:
        return code == BN_CLICKED ? ControlEvent::Activated : ControlEvent::None;
    }
}

void onParameter(HWND dialog, const BoundParameter& parameter, int control, int code) {
    if (control != parameter.control) {
        if (code == BN_CLICKED)
            toggleSound(dialog, parameter.control, control);
        return;
    }
    const ControlEvent event = eventOf(parameter, code);
    if (event == ControlEvent::Changed)
        refreshChoiceName(dialog, parameter);
    if (event == ControlEvent::Changed ||
        (event == ControlEvent::Activated && editParameter(dialog, parameter, hostOf(dialog))))
        schedulePreview(dialog);
}

void onOption(HWND dialog, int control, int code) {
    if (control == kControlEffect) {
        if (code == CBN_SELCHANGE)
            showSelectedEffect(dialog);
        return;
    }
    const bool changesPlaying = control == kControlDelay && code == EN_CHANGE;
    if (code != BN_CLICKED && !changesPlaying)
        return;
    stateOf(dialog)->enabling.refresh(dialog);
    schedulePreview(dialog);
}

void onCommand(HWND dialog, WPARAM wParam) {
    const DialogState* state = stateOf(dialog);
    if (state == nullptr || state->filling || state->busy)
        return;
    const int control = LOWORD(wParam);
    const int code = HIWORD(wParam);
    switch (control) {
    case kControlBuild:
        return onBuild(dialog, BuildKind::Real);
    case kControlTest:
        return onBuild(dialog, BuildKind::Test);
    case kControlCancel:
        EndDialog(dialog, IDCANCEL);
        return;
    case kControlPlay:
        return onPlay(dialog);
    case kControlDefaults:
        return onDefaults(dialog);
    case kControlAdvanced:
        return onAdvanced(dialog);
    case kControlHelp:
        return onHelp(dialog);
    default:
        break;
    }
    if (const std::optional<BoundParameter> parameter = parameterOfControl(control))
        onParameter(dialog, *parameter, control, code);
    else
        onOption(dialog, control, code);
}

void onTimer(HWND dialog, UINT_PTR timer) {
    DialogState* state = stateOf(dialog);
    if (state == nullptr || state->busy)
        return; // it comes again
    const BusyScope busy(*state);
    KillTimer(dialog, timer);
    if (timer == kPreviewTimer) {
        state->preview.render(dialog, hostOf(dialog), selectedEffect(dialog));
        SetDlgItemTextA(dialog, kControlSummary, state->preview.summary().c_str());
    } else if (const unsigned wait = state->preview.advance(dialog, hostOf(dialog)); wait != 0) {
        SetTimer(dialog, kPlayTimer, wait, nullptr);
    } else {
        schedulePreview(dialog);
    }
}

void onDrawItem(HWND dialog, const DRAWITEMSTRUCT& item) {
    const int control = static_cast<int>(item.CtlID);
    if (control == kControlPreview) {
        if (const DialogState* state = stateOf(dialog))
            state->preview.draw(item);
    } else if (const std::optional<BoundParameter> parameter = parameterOfControl(control)) {
        drawParameter(item, *parameter);
    } else {
        drawPushButton(item, hostOf(dialog)->buttonStyle, control == kControlBuild);
    }
}

// A right click on a sound tells about it.
void onContextMenu(HWND dialog, HWND window) {
    const std::optional<BoundParameter> parameter = parameterOfControl(GetDlgCtrlID(window));
    if (!parameter || parameter->control != GetDlgCtrlID(window))
        return;
    if (parameter->row->kind == ParameterKind::Sound || parameter->row->kind == ParameterKind::PlayableSound)
        showSoundInformation(dialog, parameter->control);
}

// Keys in the marker list: Space and F2 open its editor, as a double click does. Returns what WM_VKEYTOITEM asks for.
INT_PTR onListKey(HWND dialog, WPARAM key, HWND list) {
    constexpr INT_PTR kDone = -2;
    constexpr INT_PTR kUsual = -1; // the list does what it does with this key
    if (key != VK_SPACE && key != VK_F2)
        return kUsual;
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), LBN_DBLCLK), reinterpret_cast<LPARAM>(list));
    return kDone;
}

struct OpeningParameters {
    HostParams* host;
    DialogState* state;
};

INT_PTR dispatch(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: {
        const auto* opening = reinterpret_cast<const OpeningParameters*>(lParam);
        onInitialise(dialog, opening->host, opening->state);
        return FALSE; // the focus is set already
    }
    case WM_COMMAND:
        onCommand(dialog, wParam);
        return TRUE;
    case WM_TIMER:
        onTimer(dialog, wParam);
        return TRUE;
    case WM_DRAWITEM:
        onDrawItem(dialog, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_VKEYTOITEM:
        return onListKey(dialog, LOWORD(wParam), reinterpret_cast<HWND>(lParam));
    case WM_CONTEXTMENU:
        onContextMenu(dialog, reinterpret_cast<HWND>(wParam));
        return TRUE;
    case WM_HELP:
        onHelp(dialog);
        return TRUE;
    case MM_WOM_DONE:
        return onSoundDone(dialog, wParam);
    case WM_DESTROY:
        onDestroy(dialog);
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CALLBACK mainDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return handleSafely(dialog, message, [=] { return dispatch(dialog, message, wParam, lParam); });
}

} // namespace

bool runMainDialog(HWND owner, HostParams* host) {
    registerCurveClass(moduleInstance());
    DialogState state;
    OpeningParameters opening{host, &state};
    const INT_PTR result =
        runDialog(owner, MAKEINTRESOURCEA(DIALOG_MAIN), mainDialogProc, reinterpret_cast<LPARAM>(&opening));
    unregisterCurveClass(moduleInstance());
    return result > 0; // both ways of closing it are positive
}

} // namespace veldran
