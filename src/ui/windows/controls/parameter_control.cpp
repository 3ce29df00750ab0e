// One function a step, one branch a kind of parameter.
#include "ui/windows/controls/parameter_control.h"

#include "base/windows/gdi.h"
#include "base/windows/memory_reserve.h"
#include "base/windows/module.h"
#include "base/windows/visual_styles.h"
#include "settings/windows/default_paths.h"
#include "settings/windows/marker_store.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/session_colour.h"
#include "settings/windows/settings_store.h"
#include "ui/windows/controls/curve_control.h"
#include "ui/windows/controls/data_point_control.h"
#include "ui/windows/controls/path_control.h"
#include "ui/windows/controls/swatch.h"
#include "ui/windows/editors/data_point_editor.h"
#include "ui/windows/editors/marker_editor.h"
#include "ui/windows/plugin_fonts.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include <commctrl.h>

namespace veldran {
namespace {

constexpr int kSpinnerWidth = 18;
constexpr int kPlayWidth = 44;
constexpr int kGap = 4;
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

std::string choiceName(const ParameterRow& row, int index) {
    std::string name;
    forEachChoice(row.choices, [&](const std::string& entry) {
        if (index-- == 0)
            name = entry;
    });
    return name;
}

struct ControlClass {
    const char* name;
    DWORD style;
    DWORD extendedStyle;
};

ControlClass classFor(ParameterKind kind) {
    switch (kind) {
    case ParameterKind::Number:
        return {"EDIT", ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};
    case ParameterKind::Check:
        return {"BUTTON", BS_AUTOCHECKBOX | WS_TABSTOP, 0};
    case ParameterKind::Choice:
        return {"COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, 0};
    case ParameterKind::Markers:
        return {"LISTBOX", LBS_NOINTEGRALHEIGHT | LBS_NOTIFY | LBS_WANTKEYBOARDINPUT | WS_VSCROLL | WS_TABSTOP,
                WS_EX_CLIENTEDGE};
    case ParameterKind::Curve:
        return {kCurveClass, WS_TABSTOP, 0};
    default:
        return {"BUTTON", BS_OWNERDRAW | WS_TABSTOP, 0};
    }
}

// Whether the system draws the control in its own style. Making one that it does not draw costs half as much without.
bool hasLooks(std::string_view windowClass, DWORD style) {
    return windowClass == "BUTTON" ? (style & BS_TYPEMASK) != BS_OWNERDRAW
                                   : windowClass != "STATIC" && windowClass != kCurveClass;
}

std::optional<PathKind> pathKindOf(ParameterKind kind) {
    switch (kind) {
    case ParameterKind::Sound:
    case ParameterKind::PlayableSound:
        return PathKind::Sound;
    case ParameterKind::TextFile:
        return PathKind::Text;
    case ParameterKind::ImageFile:
        return PathKind::Image;
    default:
        return std::nullopt;
    }
}

PointsKind pointsKindOf(const ParameterRow& row) {
    return row.setting == Setting::MainTachDataPointList ? PointsKind::Speed : PointsKind::Altitude;
}

void addEntries(HWND control, UINT message, std::string_view entries) {
    forEachChoice(entries, [&](const std::string& entry) {
        SendMessageA(control, message, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    });
}

void createSpinner(HWND dialog, const BoundParameter& parameter, HWND field, DWORD visible) {
    const HWND spinner = createChild(dialog, UPDOWN_CLASSA, parameter.row->range,
                                     UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_SETBUDDYINT | UDS_NOTHOUSANDS | visible, 0,
                                     parameter.control + kSpinnerOffset);
    const NumberRange range = parseRange(parameter.row->range);
    SendMessageA(spinner, UDM_SETRANGE32, static_cast<WPARAM>(range.minimum), range.maximum);
    SendMessageA(spinner, UDM_SETBUDDY, reinterpret_cast<WPARAM>(field), 0);
}

void fillChoice(HWND combo, std::uint32_t value, Setting setting) {
    const LRESULT count = SendMessageA(combo, CB_GETCOUNT, 0, 0);
    const bool known = value < static_cast<std::uint32_t>(std::max<LRESULT>(count, 0));
    SendMessageA(combo, CB_SETCURSEL, known ? value : settingRow(setting).number, 0);
}

// Numbers are stored unsigned; a range that reaches below 0 reads them as signed.
void fillNumber(HWND dialog, int control, std::uint32_t stored, NumberRange range) {
    const std::int64_t value =
        range.minimum < 0 ? std::int64_t{static_cast<std::int32_t>(stored)} : std::int64_t{stored};
    SetDlgItemTextA(dialog, control, std::to_string(clampToRange(value, range)).c_str());
}

void fillMarkers(HWND list, const BoundParameter& parameter) {
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    if (const std::optional<std::vector<std::string>> stored = loadMarkers())
        for (const std::string& line : *stored)
            SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
    else
        addEntries(list, LB_ADDSTRING, parameter.row->choices);
}

std::string windowText(HWND dialog, int control) {
    char text[kTextLimit + 1] = "";
    GetDlgItemTextA(dialog, control, text, static_cast<int>(sizeof text));
    return text;
}

void move(HWND dialog, int control, int left, int top, int right, int bottom) {
    MoveWindow(GetDlgItem(dialog, control), left, top, right - left, bottom - top, TRUE);
}

} // namespace

HWND createChild(HWND dialog, const char* windowClass, const char* text, DWORD style, DWORD extendedStyle,
                 int identity) {
    std::optional<HostLooks> plain;
    if (!hasLooks(windowClass, style))
        plain.emplace();
    const HWND child =
        CreateWindowExA(extendedStyle, windowClass, text, style | WS_CHILD, 0, 0, 0, 0, dialog,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(identity)), moduleInstance(), nullptr);
    if (child == nullptr) // a control that is missing would be saved as one that is empty
        throwOutOfMemory();
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
    const HWND window = createChild(dialog, control.name, labelsItself(row) ? row.label : "", control.style | visible,
                                    control.extendedStyle, parameter.control);
    if (row.kind == ParameterKind::Number) {
        SendMessageA(window, EM_SETLIMITTEXT, kLongestNumber, 0);
        createSpinner(dialog, parameter, window, visible);
    }
    if (row.kind == ParameterKind::Choice)
        addEntries(window, CB_ADDSTRING, row.choices);
    if (row.kind == ParameterKind::PlayableSound)
        createChild(dialog, "BUTTON", "Play", BS_PUSHBUTTON | WS_TABSTOP | visible, 0, parameter.playButton());
}

void placeParameter(HWND dialog, const BoundParameter& parameter, const RECT& cell, int labelWidth) {
    RECT box = cell;
    if (parameter.label != 0) {
        move(dialog, parameter.label, cell.left, cell.top + scaled(kLabelDrop), cell.left + labelWidth, cell.bottom);
        box.left += labelWidth;
    }
    if (parameter.row->kind == ParameterKind::Number) {
        const int edge = box.right - scaled(kSpinnerWidth);
        move(dialog, parameter.control + kSpinnerOffset, edge, box.top, box.right, box.bottom);
        box.right = edge;
    }
    if (parameter.row->kind == ParameterKind::PlayableSound) {
        const int edge = box.right - scaled(kPlayWidth);
        move(dialog, parameter.playButton(), edge, box.top, box.right, box.bottom);
        box.right = edge - scaled(kGap);
    }
    if (parameter.row->kind == ParameterKind::Curve)
        setCurveLabelWidth(GetDlgItem(dialog, parameter.control), labelWidth);
    if (parameter.row->kind == ParameterKind::Choice)
        box.bottom = box.top + scaled(kDropHeight);
    move(dialog, parameter.control, box.left, box.top, box.right, box.bottom);
}

void fillParameter(HWND dialog, const BoundParameter& parameter, const PlugInSettings& settings) {
    const ParameterRow& row = *parameter.row;
    const HWND control = GetDlgItem(dialog, parameter.control);
    const std::uint32_t value = row.setting == Setting::None ? 0 : settings.number(row.setting);
    switch (row.kind) {
    case ParameterKind::Colour:
        setColour(dialog, parameter.control, value);
        break;
    case ParameterKind::SessionColour:
        setColour(dialog, parameter.control, sessionColour());
        break;
    case ParameterKind::Number:
        fillNumber(dialog, parameter.control, value, parseRange(row.range));
        refreshChoiceName(dialog, parameter);
        break;
    case ParameterKind::Check:
        SendDlgItemMessageA(dialog, parameter.control, BM_SETCHECK, value != 0 ? BST_CHECKED : BST_UNCHECKED, 0);
        break;
    case ParameterKind::Choice:
        fillChoice(control, value, row.setting);
        break;
    case ParameterKind::Markers:
        fillMarkers(control, parameter);
        break;
    case ParameterKind::Curve:
        setCurveValue(control, value);
        break;
    default:
        SetWindowTextA(control, settings.text(row.setting).c_str());
        InvalidateRect(control, nullptr, TRUE);
    }
}

void resetParameter(HWND dialog, const BoundParameter& parameter, std::uint32_t hostFlags) {
    PlugInSettings defaults;
    fillDefaultPaths(defaults, hostFlags, DefaultPaths::Everywhere);
    if (parameter.row->kind == ParameterKind::SessionColour)
        resetSessionColour();
    if (parameter.row->kind != ParameterKind::Markers) {
        fillParameter(dialog, parameter, defaults);
        return;
    }
    const HWND list = GetDlgItem(dialog, parameter.control);
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    addEntries(list, LB_ADDSTRING, parameter.row->choices);
}

void saveParameter(HWND dialog, const BoundParameter& parameter) {
    PlugInSettings& settings = pluginSettings();
    const Setting setting = parameter.row->setting;
    switch (parameter.row->kind) {
    case ParameterKind::Colour:
        settings.setNumber(setting, readColour(dialog, parameter.control));
        break;
    case ParameterKind::SessionColour:
        setSessionColour(readColour(dialog, parameter.control));
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
        saveMarkers(readLines(dialog, parameter.control));
        break;
    case ParameterKind::Curve:
        settings.setNumber(setting, curveValue(GetDlgItem(dialog, parameter.control)));
        break;
    default:
        settings.setText(setting, windowText(dialog, parameter.control));
    }
}

bool editParameter(HWND dialog, const BoundParameter& parameter, HostParams* host) {
    if (const std::optional<PathKind> path = pathKindOf(parameter.row->kind))
        return choosePath(dialog, parameter.control, *path);
    switch (parameter.row->kind) {
    case ParameterKind::Colour:
    case ParameterKind::SessionColour:
        return chooseSwatchColour(dialog, parameter.control);
    case ParameterKind::Points:
        return editDataPoints(dialog, parameter.control, pointsKindOf(*parameter.row), host);
    case ParameterKind::Markers:
        return editMarkers(dialog, parameter.control, host);
    default:
        return true; // the control was edited in place
    }
}

void drawParameter(const DRAWITEMSTRUCT& item, const BoundParameter& parameter) {
    if (pathKindOf(parameter.row->kind))
        drawPathControl(item);
    else if (parameter.row->kind == ParameterKind::Points)
        drawDataPoints(item, pointsKindOf(*parameter.row));
    else
        drawSwatch(item);
}

void refreshChoiceName(HWND dialog, const BoundParameter& parameter) {
    const ParameterRow& row = *parameter.row;
    if (row.kind != ParameterKind::Number || row.choices[0] == '\0')
        return;
    const std::string name = choiceName(row, readParameter(dialog, parameter.control));
    SetDlgItemTextA(dialog, parameter.label, (std::string(row.label) + " " + name).c_str());
}

std::string tipFor(const BoundParameter& parameter) {
    const ParameterRow& row = *parameter.row;
    if (row.kind == ParameterKind::Markers)
        return "Double-click, or press Space, to edit the markers";
    if (row.kind != ParameterKind::Number)
        return {};
    const NumberRange range = parseRange(row.range);
    return std::to_string(range.minimum) + " to " + std::to_string(range.maximum) + "; at first " +
           std::to_string(settingRow(row.setting).number);
}

SIZE textExtent(HWND control, const std::string& text) {
    SIZE size{};
    const HDC dc = GetDC(control);
    {
        const Selected font(dc, reinterpret_cast<HGDIOBJ>(SendMessageA(control, WM_GETFONT, 0, 0)));
        GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &size);
    }
    ReleaseDC(control, dc);
    return size;
}

int labelWidthOf(HWND dialog, const BoundParameter& parameter) {
    if (parameter.row->kind == ParameterKind::Curve)
        return textExtent(GetDlgItem(dialog, parameter.control), parameter.row->label).cx;
    if (parameter.label == 0)
        return 0;
    int widest = 0;
    if (parameter.row->kind == ParameterKind::Number)
        forEachChoice(parameter.row->choices, [&](const std::string& name) {
            widest = std::max<int>(widest, textExtent(GetDlgItem(dialog, parameter.label), " " + name).cx);
        });
    return widest + textExtent(GetDlgItem(dialog, parameter.label), parameter.row->label).cx;
}

} // namespace veldran
