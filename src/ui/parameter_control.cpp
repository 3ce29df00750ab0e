// One function a kind of parameter for each of the four steps.
#include "ui/parameter_control.h"

#include "base/module.h"
#include "settings/parameter_reader.h"
#include "settings/settings_store.h"
#include "ui/plugin_fonts.h"

#include <algorithm>
#include <string>
#include <string_view>

#include <commctrl.h>

namespace veldran {
namespace {

constexpr int kSpinnerWidth = 18;
constexpr int kLabelDrop = 3; // a label's baseline sits lower than its cell's top, as the text in a field does
constexpr int kDropHeight = 240;
constexpr int kLongestNumber = 11; // characters of a signed 32-bit number

// Calls `visit` with each entry of a list separated by ";".
template <class Visit>
void forEachChoice(std::string_view choices, Visit visit) {
    while (!choices.empty()) {
        const std::size_t end = std::min(choices.find(';'), choices.size());
        visit(std::string(choices.substr(0, end)));
        choices.remove_prefix(std::min(end + 1, choices.size()));
    }
}

void createSpinner(HWND dialog, const BoundParameter& parameter, DWORD visible) {
    const HWND spinner = createChild(dialog, UPDOWN_CLASSA, parameter.row->range,
                                     UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_SETBUDDYINT | UDS_NOTHOUSANDS | visible, 0,
                                     parameter.control + kSpinnerOffset);
    const NumberRange range = parseRange(parameter.row->range);
    SendMessageA(spinner, UDM_SETRANGE32, static_cast<WPARAM>(range.minimum), range.maximum);
}

struct ControlClass {
    const char* name;
    DWORD style;
    DWORD extendedStyle;
};

ControlClass classFor(ParameterKind kind) {
    switch (kind) {
    case ParameterKind::Colour:
        return {"BUTTON", BS_OWNERDRAW | WS_TABSTOP, 0};
    case ParameterKind::Number:
        return {"EDIT", ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};
    case ParameterKind::Check:
        return {"BUTTON", BS_AUTOCHECKBOX | WS_TABSTOP, 0};
    case ParameterKind::Choice:
        return {"COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, 0};
    case ParameterKind::Markers:
        return {"LISTBOX", LBS_NOINTEGRALHEIGHT | LBS_NOTIFY | WS_VSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};
    }
    return {};
}

void addEntries(HWND control, UINT message, std::string_view entries) {
    forEachChoice(entries, [&](const std::string& entry) {
        SendMessageA(control, message, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    });
}

void fillChoice(HWND combo, Setting setting) {
    const auto chosen = static_cast<WPARAM>(pluginSettings().number(setting));
    const LRESULT count = SendMessageA(combo, CB_GETCOUNT, 0, 0);
    const bool known = chosen < static_cast<WPARAM>(std::max<LRESULT>(count, 0));
    SendMessageA(combo, CB_SETCURSEL, known ? chosen : settingRow(setting).number, 0);
}

void placeField(HWND dialog, const BoundParameter& parameter, const RECT& box) {
    const HWND field = GetDlgItem(dialog, parameter.control);
    const HWND spinner = GetDlgItem(dialog, parameter.control + kSpinnerOffset);
    const int height = box.bottom - box.top;
    MoveWindow(field, box.left, box.top, box.right - box.left - kSpinnerWidth, height, TRUE);
    MoveWindow(spinner, box.right - kSpinnerWidth, box.top, kSpinnerWidth, height, TRUE);
}

} // namespace

HWND createChild(HWND dialog, const char* windowClass, const char* text, DWORD style, DWORD extendedStyle,
                 int identity) {
    const HWND child =
        CreateWindowExA(extendedStyle, windowClass, text, style | WS_CHILD, 0, 0, 0, 0, dialog,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(identity)), moduleInstance(), nullptr);
    const PluginFonts* fonts = currentFonts();
    if (fonts != nullptr && fonts->controlFont)
        SendMessageA(child, WM_SETFONT, reinterpret_cast<WPARAM>(fonts->controlFont.get()), FALSE);
    return child;
}

void createParameter(HWND dialog, const BoundParameter& parameter, InitialVisibility visibility) {
    const DWORD visible = visibility == InitialVisibility::Shown ? WS_VISIBLE : 0;
    const ParameterRow& row = *parameter.row;
    if (parameter.label != 0)
        createChild(dialog, "STATIC", row.label, SS_LEFT | visible, 0, parameter.label);
    const ControlClass control = classFor(row.kind);
    const char* text = row.kind == ParameterKind::Check ? row.label : "";
    const HWND window =
        createChild(dialog, control.name, text, control.style | visible, control.extendedStyle, parameter.control);
    if (row.kind == ParameterKind::Number) {
        SendMessageA(window, EM_SETLIMITTEXT, kLongestNumber, 0);
        createSpinner(dialog, parameter, visible);
        SendDlgItemMessageA(dialog, parameter.control + kSpinnerOffset, UDM_SETBUDDY, reinterpret_cast<WPARAM>(window),
                            0);
    }
    if (row.kind == ParameterKind::Choice)
        addEntries(window, CB_ADDSTRING, row.choices);
}

void placeParameter(HWND dialog, const BoundParameter& parameter, const RECT& cell, int labelWidth) {
    RECT box = cell;
    if (parameter.label != 0) {
        MoveWindow(GetDlgItem(dialog, parameter.label), cell.left, cell.top + kLabelDrop, labelWidth,
                   cell.bottom - cell.top - kLabelDrop, TRUE);
        box.left += labelWidth;
    }
    if (parameter.row->kind == ParameterKind::Number) {
        placeField(dialog, parameter, box);
        return;
    }
    const bool drops = parameter.row->kind == ParameterKind::Choice;
    MoveWindow(GetDlgItem(dialog, parameter.control), box.left, box.top, box.right - box.left,
               drops ? kDropHeight : box.bottom - box.top, TRUE);
}

void fillParameter(HWND dialog, const BoundParameter& parameter) {
    const ParameterRow& row = *parameter.row;
    const HWND control = GetDlgItem(dialog, parameter.control);
    const std::uint32_t value = row.setting == Setting::None ? 0 : pluginSettings().number(row.setting);
    switch (row.kind) {
    case ParameterKind::Colour:
        setColour(dialog, parameter.control, value);
        break;
    case ParameterKind::Number:
        SetDlgItemInt(dialog, parameter.control, static_cast<UINT>(clampToRange(value, parseRange(row.range))), TRUE);
        break;
    case ParameterKind::Check:
        CheckDlgButton(dialog, parameter.control, value != 0 ? BST_CHECKED : BST_UNCHECKED);
        break;
    case ParameterKind::Choice:
        fillChoice(control, row.setting);
        break;
    case ParameterKind::Markers:
        SendMessageA(control, LB_RESETCONTENT, 0, 0);
        addEntries(control, LB_ADDSTRING, row.choices);
        break;
    }
}

void saveParameter(HWND dialog, const BoundParameter& parameter) {
    PlugInSettings& settings = pluginSettings();
    const Setting setting = parameter.row->setting;
    switch (parameter.row->kind) {
    case ParameterKind::Colour:
        settings.setNumber(setting, readColour(dialog, parameter.control));
        break;
    case ParameterKind::Number:
        settings.setNumber(setting, static_cast<std::uint32_t>(readParameter(dialog, parameter.control)));
        break;
    case ParameterKind::Check:
        settings.setNumber(setting, isChecked(dialog, parameter.control) ? 1 : 0);
        break;
    case ParameterKind::Choice:
        if (const LRESULT chosen = SendDlgItemMessageA(dialog, parameter.control, CB_GETCURSEL, 0, 0); chosen != CB_ERR)
            settings.setNumber(setting, static_cast<std::uint32_t>(chosen));
        break;
    case ParameterKind::Markers:
        break; // its lines have no setting
    }
}

} // namespace veldran
