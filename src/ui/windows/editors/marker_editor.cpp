// The fields show the chosen marker and change it as one types; the picture shows all and lets one drag them.
#include "ui/windows/editors/marker_editor.h"

#include "instruments/scopes/radar_model.h"
#include "resources/resource_ids.h"
#include "settings/marker_lines.h"
#include "settings/windows/parameter_reader.h"
#include "ui/edit_history.h"
#include "ui/help_topics.h"
#include "ui/windows/controls/buffered_paint.h"
#include "ui/windows/dialog_guard.h"
#include "ui/windows/editors/editor_layout.h"
#include "ui/windows/editors/marker_picture.h"
#include "ui/windows/help.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>

#include <commctrl.h>
#include <windowsx.h>

namespace veldran {
namespace {

constexpr int kPictureSide = 240; // pixels at 100 %
constexpr int kLongestNumber = 3;
constexpr int kNothing = -1; // no marker is chosen
constexpr int kNewDistance = 50;
constexpr LRESULT kKeyDone = -2;    // answers to WM_VKEYTOITEM
constexpr LRESULT kKeyDefault = -1; // the list box acts itself

struct MarkerState {
    std::vector<std::string> lines;
    int chosen = kNothing;
};

struct Editor {
    HostParams* host;
    MarkerState state;
    EditHistory<MarkerState> history;
    MarkerFault fault = MarkerFault::None; // of what the fields hold
    bool filling = false;                  // the program fills fields: changes are no edits
    POINT pressed{};                       // where the mouse went down on the picture
    bool dragging = false;                 // it has moved since
};

Editor& editorOf(HWND dialog) {
    return *reinterpret_cast<Editor*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

std::string& chosenLine(Editor& editor) {
    return editor.state.lines[static_cast<std::size_t>(editor.state.chosen)];
}

const char* faultText(MarkerFault fault) {
    switch (fault) {
    case MarkerFault::None:
        return "";
    case MarkerFault::NameHasComma:
        return "A name cannot contain a comma.";
    case MarkerFault::NameTooLong:
        return "A name has at most 32 characters.";
    case MarkerFault::Bearing:
        return "The bearing is 0 to 359 degrees.";
    case MarkerFault::Distance:
        return "The distance is 0 to 100 per cent.";
    }
    return "";
}

int faultField(MarkerFault fault) {
    switch (fault) {
    case MarkerFault::Bearing:
        return MARKER_BEARING;
    case MarkerFault::Distance:
        return MARKER_DISTANCE;
    default:
        return MARKER_NAME;
    }
}

void showFault(HWND dialog, MarkerFault fault) {
    editorOf(dialog).fault = fault;
    SetDlgItemTextA(dialog, MARKER_FAULT, faultText(fault));
}

void writeLines(HWND list, const std::vector<std::string>& lines) {
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    for (const std::string& line : lines)
        SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
}

void showLines(HWND dialog) {
    const MarkerState& state = editorOf(dialog).state;
    const HWND list = GetDlgItem(dialog, MARKER_LIST);
    const LRESULT top = SendMessageA(list, LB_GETTOPINDEX, 0, 0);
    SendMessageA(list, WM_SETREDRAW, FALSE, 0);
    writeLines(list, state.lines);
    SendMessageA(list, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
    SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(state.chosen), 0);
    SendMessageA(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
    InvalidateRect(GetDlgItem(dialog, MARKER_PICTURE), nullptr, FALSE);
}

void showFields(HWND dialog) {
    Editor& editor = editorOf(dialog);
    editor.filling = true;
    if (editor.state.chosen == kNothing) {
        for (const int field : {MARKER_NAME, MARKER_BEARING, MARKER_DISTANCE})
            SetDlgItemTextA(dialog, field, "");
    } else {
        const RadarMarker marker = parseRadarMarker(chosenLine(editor));
        SetDlgItemTextA(dialog, MARKER_NAME, marker.name.c_str());
        SetDlgItemInt(dialog, MARKER_BEARING, static_cast<UINT>(marker.bearing), TRUE);
        SetDlgItemInt(dialog, MARKER_DISTANCE, static_cast<UINT>(marker.distance), TRUE);
    }
    editor.filling = false;
    showFault(dialog, MarkerFault::None);
}

void enable(HWND dialog, int control, bool enabled) {
    const HWND window = GetDlgItem(dialog, control);
    // A disabled control must not keep the focus: the keyboard would be dead.
    if (!enabled && GetFocus() == window)
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, MARKER_LIST)), TRUE);
    EnableWindow(window, enabled);
}

void refreshButtons(HWND dialog) {
    const Editor& editor = editorOf(dialog);
    const MarkerState& state = editor.state;
    for (const int control :
         {MARKER_NAME, MARKER_BEARING, MARKER_BEARING_SPIN, MARKER_DISTANCE, MARKER_DISTANCE_SPIN, EDITOR_DELETE})
        enable(dialog, control, state.chosen != kNothing);
    enable(dialog, MARKER_UP, state.chosen > 0);
    enable(dialog, MARKER_DOWN, state.chosen != kNothing && state.chosen + 1 < static_cast<int>(state.lines.size()));
    enable(dialog, EDITOR_UNDO, editor.history.canUndo());
}

void showAll(HWND dialog) {
    showLines(dialog);
    showFields(dialog);
    refreshButtons(dialog);
}

// Another gesture begins with what is there now.
void beginStep(Editor& editor) {
    editor.history.begin(editor.state);
}

void choose(HWND dialog, int index) {
    Editor& editor = editorOf(dialog);
    editor.state.chosen = index;
    beginStep(editor);
    showAll(dialog);
}

// A change by one click: a step of its own.
template <class Change>
void changeLines(HWND dialog, Change change) {
    Editor& editor = editorOf(dialog);
    beginStep(editor);
    change(editor.state);
    editor.history.changed();
    showAll(dialog);
}

std::string newName(const std::vector<std::string>& lines) {
    for (int number = 1;; ++number) {
        char name[16];
        std::snprintf(name, sizeof name, "NEW%03d", number);
        if (std::ranges::none_of(lines, [&](const std::string& line) { return parseRadarMarker(line).name == name; }))
            return name;
    }
}

void onAdd(HWND dialog) {
    changeLines(dialog, [](MarkerState& state) {
        ++state.chosen; // behind the chosen one; at the front of an empty list
        state.lines.insert(state.lines.begin() + state.chosen, formatMarker(newName(state.lines), 0, kNewDistance));
    });
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, MARKER_NAME)), TRUE);
}

void onDelete(HWND dialog) {
    if (editorOf(dialog).state.chosen == kNothing)
        return;
    changeLines(dialog, [](MarkerState& state) {
        state.lines.erase(state.lines.begin() + state.chosen);
        state.chosen = std::min(state.chosen, static_cast<int>(state.lines.size()) - 1);
    });
}

void onMove(HWND dialog, int direction) {
    const MarkerState& state = editorOf(dialog).state;
    const int target = state.chosen + direction;
    if (state.chosen == kNothing || target < 0 || target >= static_cast<int>(state.lines.size()))
        return;
    changeLines(dialog, [target](MarkerState& changed) {
        std::swap(changed.lines[static_cast<std::size_t>(changed.chosen)],
                  changed.lines[static_cast<std::size_t>(target)]);
        changed.chosen = target;
    });
}

void onUndo(HWND dialog) {
    Editor& editor = editorOf(dialog);
    if (!editor.history.canUndo())
        return;
    editor.state = editor.history.undo();
    showAll(dialog);
}

// The number in a field; nothing that any marker has when there is none.
int fieldNumber(HWND dialog, int field) {
    BOOL isNumber = FALSE;
    const auto number = static_cast<int>(GetDlgItemInt(dialog, field, &isNumber, TRUE));
    return isNumber ? number : -1;
}

void onFieldChange(HWND dialog) {
    Editor& editor = editorOf(dialog);
    if (editor.filling || editor.state.chosen == kNothing)
        return;
    char name[kMarkerNameLimit + 2] = "";
    GetDlgItemTextA(dialog, MARKER_NAME, name, static_cast<int>(sizeof name));
    const int bearing = fieldNumber(dialog, MARKER_BEARING);
    const int distance = fieldNumber(dialog, MARKER_DISTANCE);
    showFault(dialog, checkMarker(name, bearing, distance));
    if (editor.fault != MarkerFault::None)
        return;
    chosenLine(editor) = formatMarker(name, bearing, distance);
    editor.history.changed();
    showLines(dialog);
    refreshButtons(dialog);
}

void onField(HWND dialog, int code) {
    if (code == EN_SETFOCUS)
        beginStep(editorOf(dialog));
    else if (code == EN_CHANGE)
        onFieldChange(dialog);
}

void onPress(HWND dialog, const RECT& box, POINT place) {
    Editor& editor = editorOf(dialog);
    const std::optional<int> under = markerUnder(box, editor.state.lines, place);
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, MARKER_LIST)), TRUE);
    if (!under)
        return;
    choose(dialog, *under);
    editor.pressed = place;
    editor.dragging = false;
    SetCapture(GetDlgItem(dialog, MARKER_PICTURE));
}

void onDrag(HWND dialog, const RECT& box, POINT place) {
    Editor& editor = editorOf(dialog);
    // A click that trembles chooses and moves nothing.
    editor.dragging = editor.dragging || std::abs(place.x - editor.pressed.x) > GetSystemMetrics(SM_CXDRAG) ||
                      std::abs(place.y - editor.pressed.y) > GetSystemMetrics(SM_CYDRAG);
    if (!editor.dragging || editor.state.chosen == kNothing)
        return;
    const MarkerPlace target = placeUnder(box, place);
    chosenLine(editor) = formatMarker(parseRadarMarker(chosenLine(editor)).name, target.bearing, target.distance);
    editor.history.changed();
    showAll(dialog);
}

void paintPicture(HWND dialog, HWND picture) {
    const BufferedPaint paint(picture);
    const Selected font(paint.dc(), reinterpret_cast<HGDIOBJ>(SendMessageA(picture, WM_GETFONT, 0, 0)));
    const MarkerState& state = editorOf(dialog).state;
    drawMarkerPicture(paint.dc(), paint.box(), state.lines, state.chosen);
}

void dispatchPicture(HWND dialog, HWND picture, UINT message, LPARAM lParam) {
    const POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    RECT box{};
    GetClientRect(picture, &box);
    if (message == WM_PAINT)
        paintPicture(dialog, picture);
    else if (message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK)
        onPress(dialog, box, place);
    else if (message == WM_MOUSEMOVE && GetCapture() == picture)
        onDrag(dialog, box, place);
    else if (message == WM_LBUTTONUP && GetCapture() == picture)
        ReleaseCapture();
}

// The picture is a static control that paints itself and takes the mouse. `reference` is the dialog.
LRESULT CALLBACK pictureProc(HWND picture, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identity,
                             DWORD_PTR reference) {
    switch (message) {
    case WM_PAINT:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_MOUSEMOVE:
    case WM_LBUTTONUP:
        try {
            dispatchPicture(reinterpret_cast<HWND>(reference), picture, message, lParam);
        } catch (const std::bad_alloc&) {
            // Left undone.
        }
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_NCDESTROY:
        RemoveWindowSubclass(picture, pictureProc, identity);
        break;
    }
    return DefSubclassProc(picture, message, wParam, lParam);
}

void layOut(HWND dialog) {
    const EditorLayout layout(dialog);
    const int margin = layout.margin();
    const int gap = layout.gap();
    const int side = scaled(kPictureSide);
    const int button = layout.buttonWidth({EDITOR_ADD, EDITOR_DELETE, EDITOR_UNDO, IDOK, IDCANCEL, EDITOR_HELP});
    const int moveButton = layout.buttonWidth({MARKER_UP, MARKER_DOWN});
    const int group = 3 * button + 2 * gap;
    const int width = std::max(2 * group + 3 * gap, 2 * moveButton + gap + margin + side);
    const int listWidth = width - side - margin;
    int y = margin;
    layout.place(MARKER_LIST_LABEL, margin, y, listWidth, layout.lineHeight());
    layout.place(MARKER_PICTURE, margin + listWidth + margin, y, side, side);
    const int listTop = y + layout.lineHeight() + scaled(3);
    y += side - layout.buttonHeight();
    layout.place(MARKER_LIST, margin, listTop, listWidth, y - gap - listTop);
    layout.placeButtons({MARKER_UP, MARKER_DOWN}, margin, y, moveButton);
    y += layout.buttonHeight() + margin;

    const int number = layout.textWidth("00000") + scaled(22);
    const int bearingLabel = layout.labelWidth(MARKER_BEARING_LABEL);
    const int distanceLabel = layout.labelWidth(MARKER_DISTANCE_LABEL);
    const int nameLabel = layout.labelWidth(MARKER_NAME_LABEL);
    const auto numberWidth = [&](int label, int unit) {
        return label + gap + number + scaled(4) + layout.labelWidth(unit);
    };
    const int numbers =
        numberWidth(bearingLabel, MARKER_BEARING_UNIT) + 2 * gap + numberWidth(distanceLabel, MARKER_DISTANCE_UNIT);
    const int nameWidth = width - numbers - 2 * gap - nameLabel - gap;
    layout.placeLabel(MARKER_NAME_LABEL, margin, y, nameLabel);
    layout.place(MARKER_NAME, margin + nameLabel + gap, y, nameWidth, layout.fieldHeight());
    const int behind =
        layout.placeNumber({MARKER_BEARING_LABEL, MARKER_BEARING, MARKER_BEARING_SPIN, MARKER_BEARING_UNIT},
                           margin + width - numbers, y, bearingLabel, number);
    layout.placeNumber({MARKER_DISTANCE_LABEL, MARKER_DISTANCE, MARKER_DISTANCE_SPIN, MARKER_DISTANCE_UNIT},
                       behind + 2 * gap, y, distanceLabel, number);
    y += layout.fieldHeight() + scaled(4);
    layout.place(MARKER_FAULT, margin, y, width, layout.lineHeight());
    y += layout.lineHeight() + gap;
    layout.placeButtons({EDITOR_ADD, EDITOR_DELETE, EDITOR_UNDO}, margin, y, button);
    layout.placeButtons({IDOK, IDCANCEL, EDITOR_HELP}, margin + width - group, y, button);
    layout.finish(width + 2 * margin, y + layout.buttonHeight() + margin);
}

void onInitialise(HWND dialog, Editor* editor) {
    SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(editor));
    editor->filling = true;
    SetWindowSubclass(GetDlgItem(dialog, MARKER_PICTURE), pictureProc, 0, reinterpret_cast<DWORD_PTR>(dialog));
    prepareEditorButtons(dialog, editor->host);
    layOut(dialog);
    SendDlgItemMessageA(dialog, MARKER_BEARING_SPIN, UDM_SETRANGE32, 0, kHighestBearing);
    SendDlgItemMessageA(dialog, MARKER_DISTANCE_SPIN, UDM_SETRANGE32, 0, kHighestDistance);
    for (const int field : {MARKER_BEARING, MARKER_DISTANCE})
        SendDlgItemMessageA(dialog, field, EM_SETLIMITTEXT, kLongestNumber, 0);
    SendDlgItemMessageA(dialog, MARKER_NAME, EM_SETLIMITTEXT, kMarkerNameLimit, 0);
    choose(dialog, editor->state.lines.empty() ? kNothing : 0);
    SetFocus(GetDlgItem(dialog, MARKER_LIST));
}

void onOk(HWND dialog) {
    const MarkerFault fault = editorOf(dialog).fault;
    if (fault == MarkerFault::None) {
        EndDialog(dialog, IDOK);
        return;
    }
    MessageBeep(MB_OK);
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, faultField(fault))), TRUE);
}

LRESULT onListKey(HWND dialog, int key) {
    const bool control = GetKeyState(VK_CONTROL) < 0;
    if (key == VK_DELETE)
        onDelete(dialog);
    else if (key == VK_INSERT)
        onAdd(dialog);
    else if (control && (key == VK_UP || key == VK_DOWN))
        onMove(dialog, key == VK_UP ? -1 : 1);
    else if (control && key == 'Z')
        onUndo(dialog);
    else
        return kKeyDefault;
    return kKeyDone;
}

void onCommand(HWND dialog, int control, int code) {
    switch (control) {
    case IDOK:
        return onOk(dialog);
    case IDCANCEL:
        EndDialog(dialog, IDCANCEL);
        return;
    case EDITOR_HELP:
        return showHelp(dialog, editorOf(dialog).host, kHelpMarkers);
    case EDITOR_ADD:
        return onAdd(dialog);
    case EDITOR_DELETE:
        return onDelete(dialog);
    case EDITOR_UNDO:
        return onUndo(dialog);
    case MARKER_UP:
        return onMove(dialog, -1);
    case MARKER_DOWN:
        return onMove(dialog, 1);
    case MARKER_LIST:
        if (code == LBN_SELCHANGE)
            choose(dialog, static_cast<int>(SendDlgItemMessageA(dialog, MARKER_LIST, LB_GETCURSEL, 0, 0)));
        return;
    case MARKER_NAME:
    case MARKER_BEARING:
    case MARKER_DISTANCE:
        return onField(dialog, code);
    }
}

INT_PTR dispatch(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        onInitialise(dialog, reinterpret_cast<Editor*>(lParam));
        return FALSE; // the focus is set already
    }
    if (GetWindowLongPtrA(dialog, DWLP_USER) == 0)
        return FALSE;
    if (message == WM_VKEYTOITEM)
        return onListKey(dialog, LOWORD(wParam));
    if (message == WM_DRAWITEM)
        drawEditorButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), editorOf(dialog).host);
    else if (message == WM_COMMAND)
        onCommand(dialog, LOWORD(wParam), HIWORD(wParam));
    else
        return FALSE;
    return TRUE;
}

INT_PTR CALLBACK editorProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return handleSafely(dialog, message, [=] { return dispatch(dialog, message, wParam, lParam); });
}

} // namespace

bool editMarkers(HWND dialog, int listControlId, HostParams* host) {
    const std::vector<std::string> before = readLines(dialog, listControlId);
    Editor editor{};
    editor.host = host;
    editor.state.lines = before;
    const INT_PTR answer = runDialog(dialog, "EditMarkerListBox", editorProc, reinterpret_cast<LPARAM>(&editor));
    if (answer != IDOK || editor.state.lines == before)
        return false;
    writeLines(GetDlgItem(dialog, listControlId), editor.state.lines);
    return true;
}

} // namespace veldran
