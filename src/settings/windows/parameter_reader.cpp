// Everything is asked of the controls themselves, so that whoever fills them, person or program, is understood.
#include "settings/windows/parameter_reader.h"

#include "settings/parameter.h"

#include <algorithm>
#include <cstdlib>

namespace veldran {
namespace {

bool isInstrumentControl(int identity) {
    const int field = identity >= kSpinnerOffset ? identity - kSpinnerOffset : identity;
    return field >= kFirstInstrumentControl && field <= kLastInstrumentControl;
}

std::string spinnerRangeText(HWND dialog, int controlId) {
    char text[261] = "";
    GetDlgItemTextA(dialog, controlId + kSpinnerOffset, text, static_cast<int>(sizeof text));
    return text;
}

} // namespace

int readParameter(HWND dialog, int controlId) {
    const NumberRange range = parseRange(spinnerRangeText(dialog, controlId).c_str());
    char text[64] = ""; // more digits than any number needs
    GetDlgItemTextA(dialog, controlId, text, static_cast<int>(sizeof text));
    return clampToRange(fieldInteger(text, range), range);
}

std::string readText(HWND dialog, int controlId) {
    const HWND control = GetDlgItem(dialog, controlId);
    std::string text(static_cast<std::size_t>(std::max(GetWindowTextLengthA(control), 0)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(control, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool isChecked(HWND dialog, int controlId) {
    return IsDlgButtonChecked(dialog, controlId) == BST_CHECKED;
}

bool isCheckedAndEnabled(HWND dialog, int controlId) {
    return IsWindowEnabled(GetDlgItem(dialog, controlId)) && isChecked(dialog, controlId);
}

Colour readColour(HWND dialog, int controlId) {
    return static_cast<Colour>(GetWindowLongPtrA(GetDlgItem(dialog, controlId), GWLP_USERDATA)) & 0xFFFFFF;
}

void setColour(HWND dialog, int controlId, Colour colour) {
    const HWND swatch = GetDlgItem(dialog, controlId);
    SetWindowLongPtrA(swatch, GWLP_USERDATA, static_cast<LONG_PTR>(colour & 0xFFFFFF));
    InvalidateRect(swatch, nullptr, TRUE);
}

CurvePoints readCurve(HWND dialog, int controlId) {
    return unpackCurve(static_cast<std::uint32_t>(GetWindowLongPtrA(GetDlgItem(dialog, controlId), GWLP_USERDATA)));
}

int readChoiceNumber(HWND dialog, int controlId) {
    const LRESULT chosen = SendDlgItemMessageA(dialog, controlId, CB_GETCURSEL, 0, 0);
    if (chosen == CB_ERR)
        return 0;
    const LRESULT length = SendDlgItemMessageA(dialog, controlId, CB_GETLBTEXTLEN, static_cast<WPARAM>(chosen), 0);
    if (length == CB_ERR)
        return 0;
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    SendDlgItemMessageA(dialog, controlId, CB_GETLBTEXT, static_cast<WPARAM>(chosen),
                        reinterpret_cast<LPARAM>(text.data()));
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

int readChoicePosition(HWND dialog, int controlId) {
    const LRESULT chosen = SendDlgItemMessageA(dialog, controlId, CB_GETCURSEL, 0, 0);
    return chosen == CB_ERR ? 0 : static_cast<int>(chosen);
}

std::vector<std::string> readLines(HWND dialog, int controlId) {
    std::vector<std::string> lines;
    const LRESULT count = SendDlgItemMessageA(dialog, controlId, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const auto index = static_cast<WPARAM>(i);
        const LRESULT length = SendDlgItemMessageA(dialog, controlId, LB_GETTEXTLEN, index, 0);
        if (length == LB_ERR)
            continue;
        std::string line(static_cast<std::size_t>(length) + 1, '\0');
        const LRESULT copied =
            SendDlgItemMessageA(dialog, controlId, LB_GETTEXT, index, reinterpret_cast<LPARAM>(line.data()));
        if (copied == LB_ERR)
            continue;
        line.resize(static_cast<std::size_t>(copied));
        lines.push_back(std::move(line));
    }
    return lines;
}

void showControls(HWND dialog, std::span<const int> controls) {
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const int identity = GetDlgCtrlID(child);
        if (isInstrumentControl(identity))
            ShowWindow(child, std::ranges::find(controls, identity) != controls.end() ? SW_SHOW : SW_HIDE);
    }
}

} // namespace veldran
