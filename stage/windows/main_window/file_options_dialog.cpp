// The dialog's controls lie in the resource script; see the header.
#include "windows/main_window/file_options_dialog.h"

#include "document/animation.h"
#include "windows/main_window/file_dialogs.h"
#include "windows/system/screen_scale.h"
#include "windows/system/window_class.h"
#include "windows/window_ids.h"

#include <commctrl.h>

#include <string>

namespace stage {
namespace {

constexpr std::uint32_t kMostOpaque = 255;
constexpr std::uint32_t kFirstPlays = 3; // offered to who stops an animation that ran forever

class Dialog {
public:
    explicit Dialog(const FileOptions& first) : options_(first) {}

    const FileOptions& options() const { return options_; }

    INT_PTR answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        switch (message) {
        case WM_INITDIALOG:
            begin(window);
            return TRUE;
        case WM_COMMAND:
            return onCommand(LOWORD(wParam));
        case WM_DRAWITEM:
            drawSwatch(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        default:
            return FALSE;
        }
    }

private:
    void begin(HWND window) {
        window_ = window;
        centre();
        const bool isForever = options_.plays == 0;
        CheckRadioButton(window, ID_FOREVER, ID_COUNTED, isForever ? ID_FOREVER : ID_COUNTED);
        setNumber(ID_PLAYS, ID_PLAYS_SPIN, isForever ? kFirstPlays : options_.plays, kMostPlays);
        setNumber(ID_THRESHOLD, ID_THRESHOLD_SPIN, options_.write.opacityThreshold, kMostOpaque);
        enablePlays();
    }

    // Over the owner.
    void centre() const {
        RECT owner, own;
        GetWindowRect(GetWindow(window_, GW_OWNER), &owner);
        GetWindowRect(window_, &own);
        const LONG left = owner.left + (owner.right - owner.left - (own.right - own.left)) / 2;
        const LONG top = owner.top + (owner.bottom - owner.top - (own.bottom - own.top)) / 2;
        SetWindowPos(window_, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        SendMessageW(window_, DM_REPOSITION, 0, 0); // back onto the screen
    }

    void setNumber(int field, int spinner, std::uint32_t value, std::uint32_t most) {
        SendDlgItemMessageW(window_, spinner, UDM_SETRANGE32, 1, static_cast<LPARAM>(most));
        SendDlgItemMessageW(window_, field, EM_SETLIMITTEXT, std::to_string(most).size(), 0);
        SetDlgItemInt(window_, field, value, FALSE);
    }

    void enablePlays() {
        const BOOL isCounted = IsDlgButtonChecked(window_, ID_COUNTED) == BST_CHECKED;
        for (const int control : {ID_PLAYS, ID_PLAYS_SPIN})
            EnableWindow(GetDlgItem(window_, control), isCounted);
    }

    // Nothing when the field holds no such number; that has been told, and the field has the focus then.
    std::optional<std::uint32_t> number(int field, std::uint32_t most) {
        BOOL isNumber = FALSE;
        const UINT value = GetDlgItemInt(window_, field, &isNumber, FALSE);
        if (isNumber && value >= 1 && value <= most)
            return value;
        showTrouble(window_, "Give a number from 1 to " + std::to_string(most) + ".");
        SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(window_, field)), TRUE);
        return std::nullopt;
    }

    bool take() {
        options_.plays = 0;
        if (IsDlgButtonChecked(window_, ID_COUNTED) == BST_CHECKED) {
            const auto plays = number(ID_PLAYS, kMostPlays);
            if (!plays)
                return false;
            options_.plays = *plays;
        }
        const auto threshold = number(ID_THRESHOLD, kMostOpaque);
        if (threshold)
            options_.write.opacityThreshold = static_cast<std::uint8_t>(*threshold);
        return threshold.has_value();
    }

    INT_PTR onCommand(int command) {
        switch (command) {
        case IDOK:
            if (take())
                EndDialog(window_, IDOK);
            return TRUE;
        case IDCANCEL:
            EndDialog(window_, IDCANCEL);
            return TRUE;
        case ID_FOREVER:
        case ID_COUNTED:
            enablePlays();
            return TRUE;
        case ID_MATTE:
            if (const auto colour = askForColour(window_, options_.write.matte)) {
                options_.write.matte = *colour;
                InvalidateRect(GetDlgItem(window_, ID_SWATCH), nullptr, FALSE);
            }
            return TRUE;
        default:
            return FALSE;
        }
    }

    void drawSwatch(const DRAWITEMSTRUCT& item) const {
        const Rgb matte = options_.write.matte;
        const Brush brush(CreateSolidBrush(RGB(matte.red, matte.green, matte.blue)));
        FillRect(item.hDC, &item.rcItem, brush.get());
        FrameRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_WINDOWFRAME));
    }

    FileOptions options_;
    HWND window_ = nullptr;
};

INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG)
        SetWindowLongPtrW(window, DWLP_USER, lParam);
    auto* dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    try {
        return dialog == nullptr ? FALSE : dialog->answer(window, message, wParam, lParam);
    } catch (const std::exception& exception) {
        showTrouble(window, exception);
        return FALSE;
    }
}

} // namespace

std::optional<FileOptions> askForFileOptions(HWND owner, const FileOptions& first) {
    const ModernLooks looks;
    Dialog dialog(first);
    const INT_PTR result = DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_FILE_OPTIONS_DIALOG), owner,
                                           dialogProcedure, reinterpret_cast<LPARAM>(&dialog));
    return result == IDOK ? std::optional(dialog.options()) : std::nullopt;
}

} // namespace stage
