// Dispatches the dialog's messages to functions with names.
#include "ui/main_dialog.h"

#include "base/module.h"
#include "host/build_driver.h"
#include "host/host_link.h"
#include "instruments/effect_registry.h"
#include "resources/resource_ids.h"
#include "settings/default_paths.h"
#include "settings/output_options.h"
#include "settings/parameter.h"
#include "settings/settings_store.h"
#include "ui/output_panel.h"
#include "ui/panel.h"
#include "ui/preview.h"
#include "ui/swatch.h"

#include <new>

namespace veldran {
namespace {

constexpr UINT_PTR kPreviewTimer = 1;
constexpr UINT kPreviewPause = 120; // milliseconds after the last change: typing stays fluid
constexpr char kStateProperty[] = "VeldranMainDialog";

// What one open dialog keeps besides its controls. The window's user data is the host's parameter block.
struct DialogState {
    Preview preview;
    bool filling = true; // controls are being filled by the program: changes are no edits
    bool building = false;
};

DialogState* stateOf(HWND dialog) {
    return static_cast<DialogState*>(GetPropA(dialog, kStateProperty));
}

HostParams* hostOf(HWND dialog) {
    return reinterpret_cast<HostParams*>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
}

void schedulePreview(HWND dialog) {
    SetTimer(dialog, kPreviewTimer, kPreviewPause, nullptr);
}

void showSelectedEffect(HWND dialog) {
    showInstrumentControls(dialog, -1);
    showInstrumentControls(dialog, selectedEffect(dialog));
    schedulePreview(dialog);
}

void onInitialise(HWND dialog, HostParams* host, DialogState* state) {
    SetWindowLongPtrA(dialog, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(host));
    SetPropA(dialog, kStateProperty, state);
    loadSettings();
    fillDefaultPaths(host->flags, DefaultPaths::WhereEmpty);
    createOutputControls(dialog);
    fillOutputControls(dialog);
    fillPanels(dialog);
    layOutMainDialog(dialog);
    refreshEnabling(dialog);
    state->filling = false;
    showSelectedEffect(dialog);
    SetFocus(GetDlgItem(dialog, kControlEffect));
}

void onDestroy(HWND dialog) {
    KillTimer(dialog, kPreviewTimer);
    saveOutputControls(dialog);
    savePanels(dialog);
    saveSettings();
    RemovePropA(dialog, kStateProperty);
}

void onBuild(HWND dialog, BuildKind kind) {
    DialogState& state = *stateOf(dialog);
    if (state.building)
        return;
    state.building = true;
    refreshEnabling(dialog);
    sendToHost(hostOf(dialog), nullptr, kHostBuildBegins, 0, 0);
    const bool done = buildAnimation(dialog, hostOf(dialog), kind);
    state.building = false;
    if (done && kind == BuildKind::Real)
        EndDialog(dialog, IDOK);
}

bool isInstrumentEdit(int control, int code) {
    if (control < kFirstInstrumentControl || control > kLastInstrumentControl)
        return false;
    return code == EN_CHANGE || code == BN_CLICKED || code == CBN_SELCHANGE;
}

bool isSwatch(HWND control) {
    return (GetWindowLongPtrA(control, GWL_STYLE) & BS_TYPEMASK) == BS_OWNERDRAW;
}

void onControl(HWND dialog, int control, int code, HWND window) {
    if (control == kControlEffect && code == CBN_SELCHANGE)
        showSelectedEffect(dialog);
    else if (isInstrumentEdit(control, code)) {
        char windowClass[16] = "";
        GetClassNameA(window, windowClass, static_cast<int>(sizeof windowClass));
        const bool clickedSwatch = code == BN_CLICKED && lstrcmpiA(windowClass, "BUTTON") == 0 && isSwatch(window);
        if (!clickedSwatch || chooseSwatchColour(dialog, control))
            schedulePreview(dialog);
    } else if (code == BN_CLICKED) {
        refreshEnabling(dialog);
        schedulePreview(dialog);
    }
}

void onCommand(HWND dialog, WPARAM wParam, LPARAM lParam) {
    const DialogState* state = stateOf(dialog);
    if (state == nullptr || state->filling)
        return;
    switch (LOWORD(wParam)) {
    case kControlBuild:
        onBuild(dialog, BuildKind::Real);
        break;
    case kControlTest:
        onBuild(dialog, BuildKind::Test);
        break;
    case kControlCancel:
        if (!state->building)
            EndDialog(dialog, IDCANCEL);
        break;
    default:
        onControl(dialog, LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
    }
}

void onTimer(HWND dialog) {
    KillTimer(dialog, kPreviewTimer);
    DialogState* state = stateOf(dialog);
    if (state != nullptr && !state->building)
        state->preview.render(dialog, hostOf(dialog), selectedEffect(dialog));
}

void onDrawItem(HWND dialog, const DRAWITEMSTRUCT& item) {
    if (item.CtlID != static_cast<UINT>(kControlPreview))
        drawSwatch(item);
    else if (const DialogState* state = stateOf(dialog))
        state->preview.draw(item);
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
        onCommand(dialog, wParam, lParam);
        return TRUE;
    case WM_TIMER:
        onTimer(dialog);
        return TRUE;
    case WM_DRAWITEM:
        onDrawItem(dialog, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_DESTROY:
        onDestroy(dialog);
        return TRUE;
    default:
        return FALSE;
    }
}

// Nothing is thrown across the window procedure: what runs out of memory here is left undone.
INT_PTR CALLBACK mainDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return dispatch(dialog, message, wParam, lParam);
    } catch (const std::bad_alloc&) {
        return FALSE;
    }
}

} // namespace

void runMainDialog(HWND owner, HostParams* host) {
    DialogState state;
    OpeningParameters opening{host, &state};
    DialogBoxParamA(moduleInstance(), MAKEINTRESOURCEA(DIALOG_MAIN), owner, mainDialogProc,
                    reinterpret_cast<LPARAM>(&opening));
}

} // namespace veldran
