// Dialogs are subclassed as they are created, so that they stay hidden. When one has handled WM_INITDIALOG, its
// controls are filled, and the button's message is posted into its own message loop. Hooks that see every message would
// do the same, but a dialog of many controls would open several times slower.
#include "windows/plugin/dialog_driver.h"

#include "base/failure.h"
#include "windows/system/wide_text.h"

#include <commctrl.h>

#include <string_view>

namespace stage {
namespace {

constexpr UINT_PTR kDriverSubclass = 1;
constexpr wchar_t kDialogClass[] = L"#32770"; // every dialog's window class

DialogDriver* activeDriver = nullptr;

std::wstring textOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool isOfClass(HWND window, std::wstring_view name) {
    wchar_t className[32];
    const int length = GetClassNameW(window, className, static_cast<int>(std::size(className)));
    return CompareStringOrdinal(className, length, name.data(), static_cast<int>(name.size()), TRUE) == CSTR_EQUAL;
}

void press(HWND dialog, int button) {
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

} // namespace

DialogDriver::DialogDriver(int buildButton, int testButton) : buildButton_(buildButton), testButton_(testButton) {
    activeDriver = this;
    creationHook_ = Hook(SetWindowsHookExW(WH_CBT, windowIsCreated, nullptr, GetCurrentThreadId()));
    if (creationHook_)
        return;
    activeDriver = nullptr;
    throw Failure(ExitCode::PluginFailed, "The system does not let this program operate the plugin's dialog.");
}

DialogDriver::~DialogDriver() {
    activeDriver = nullptr;
}

// Child dialogs, such as pages inside the configuration dialog, are no windows of their own.
LRESULT CALLBACK DialogDriver::windowIsCreated(int code, WPARAM wParam, LPARAM lParam) {
    const auto window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_CREATEWND && activeDriver != nullptr && isOfClass(window, kDialogClass) &&
        (reinterpret_cast<const CBT_CREATEWNDW*>(lParam)->lpcs->style & WS_CHILD) == 0)
        SetWindowSubclass(window, dialogMessage, kDriverSubclass, reinterpret_cast<DWORD_PTR>(activeDriver));
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void DialogDriver::dialogIsReady(HWND dialog) {
    if (configuration_ == nullptr && GetDlgItem(dialog, testButton_) != nullptr)
        configuration_ = dialog;
    if (dialog == configuration_)
        press(dialog, buildButton_);
    else
        answerMessageBox(dialog);
}

void DialogDriver::answerMessageBox(HWND box) {
    std::wstring text;
    int button = IDOK;
    for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (isOfClass(child, L"Static"))
            text += textOf(child);
        else if (isOfClass(child, L"Button") && GetDlgItem(box, IDOK) == nullptr)
            button = GetDlgCtrlID(child);
    }
    messages_.push_back(utf8FromWide(text));
    press(box, button);
}

LRESULT CALLBACK DialogDriver::dialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                             DWORD_PTR driver) {
    auto* self = reinterpret_cast<DialogDriver*>(driver);
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(window, dialogMessage, kDriverSubclass);
    const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
    if (message == WM_INITDIALOG)
        self->dialogIsReady(window);
    if (message == WM_WINDOWPOSCHANGING)
        reinterpret_cast<WINDOWPOS*>(lParam)->flags &= ~static_cast<UINT>(SWP_SHOWWINDOW);
    // The build is over when its button has been handled. A dialog that closed itself is past hearing this.
    if (message == WM_COMMAND && window == self->configuration_ && LOWORD(wParam) == self->buildButton_)
        press(window, IDCANCEL);
    return result;
}

} // namespace stage
