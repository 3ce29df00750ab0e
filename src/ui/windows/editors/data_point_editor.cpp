// The graph holds the points; the two fields show the chosen one in the units of the instrument and move it as one
// types.
#include "ui/windows/editors/data_point_editor.h"

#include "resources/resource_ids.h"
#include "ui/help_topics.h"
#include "ui/windows/dialog_guard.h"
#include "ui/windows/editors/data_point_graph.h"
#include "ui/windows/editors/editor_layout.h"
#include "ui/windows/help.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <string>

#include <commctrl.h>

namespace veldran {
namespace {

constexpr int kLongestText = 260; // as much of the control's text as instruments read, with its NUL
constexpr int kLongestNumber = 5;
constexpr int kGraphWidth = 420; // pixels at 100 %
constexpr int kGraphHeight = 240;
constexpr int kSpinsPerFullScale = 200; // clicks on the spinner from 0 to full scale

struct Editor {
    PointsKind kind;
    HostParams* host;
    std::string text;       // read when the dialog opens, written when OK closes it
    bool filling = false;   // fields are being filled by the program: changes are no edits
    int fieldWithEdits = 0; // the field that a person is typing into keeps what was typed
};

Editor& editorOf(HWND dialog) {
    return *reinterpret_cast<Editor*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

HWND graphOf(HWND dialog) {
    return GetDlgItem(dialog, POINT_GRAPH);
}

DataPoint chosenPoint(HWND dialog) {
    return graphPoints(graphOf(dialog))[chosenGraphPoint(graphOf(dialog))];
}

void setField(HWND dialog, int field, int value) {
    if (editorOf(dialog).fieldWithEdits != field)
        SetDlgItemInt(dialog, field, static_cast<UINT>(value), FALSE);
}

void enable(HWND dialog, int control, bool enabled) {
    const HWND window = GetDlgItem(dialog, control);
    // A disabled button must not keep the focus: the keyboard would be dead.
    if (!enabled && GetFocus() == window)
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(graphOf(dialog)), TRUE);
    EnableWindow(window, enabled);
}

void showChosenPoint(HWND dialog) {
    Editor& editor = editorOf(dialog);
    const HWND graph = graphOf(dialog);
    const DataPoint point = chosenPoint(dialog);
    const bool isEnd = isGraphEnd(graph, chosenGraphPoint(graph));
    editor.filling = true;
    setField(dialog, POINT_POSITION, point.position);
    setField(dialog, POINT_VALUE, MulDiv(point.value, fullScale(editor.kind), kHighestValue));
    editor.filling = false;
    for (const int control : {POINT_POSITION, POINT_POSITION_SPIN, EDITOR_DELETE})
        enable(dialog, control, !isEnd);
    enable(dialog, EDITOR_ADD, graphPoints(graph).size() < kMostDataPoints);
    enable(dialog, EDITOR_UNDO, canUndoGraph(graph));
}

void onFieldChange(HWND dialog, int field) {
    Editor& editor = editorOf(dialog);
    BOOL isNumber = FALSE;
    const auto entered = static_cast<int>(std::min(GetDlgItemInt(dialog, field, &isNumber, FALSE), 1'000'000u));
    if (editor.filling || !isNumber)
        return;
    DataPoint target = chosenPoint(dialog);
    if (field == POINT_POSITION)
        target.position = entered;
    else
        target.value = MulDiv(entered, kHighestValue, fullScale(editor.kind));
    editor.fieldWithEdits = field;
    moveChosenPoint(graphOf(dialog), target);
    editor.fieldWithEdits = 0;
}

void onField(HWND dialog, int field, int code) {
    if (code == EN_SETFOCUS)
        beginGraphStep(graphOf(dialog));
    else if (code == EN_CHANGE)
        onFieldChange(dialog, field);
    else if (code == EN_KILLFOCUS)
        showChosenPoint(dialog);
}

void prepareSpinner(HWND dialog, int spinner, int highest, int step) {
    UDACCEL acceleration{0, static_cast<UINT>(step)};
    SendDlgItemMessageA(dialog, spinner, UDM_SETRANGE32, 0, highest);
    SendDlgItemMessageA(dialog, spinner, UDM_SETACCEL, 1, reinterpret_cast<LPARAM>(&acceleration));
}

void layOut(HWND dialog) {
    const EditorLayout layout(dialog);
    const int margin = layout.margin();
    const int gap = layout.gap();
    const int button = layout.buttonWidth({EDITOR_ADD, EDITOR_DELETE, EDITOR_UNDO, IDOK, IDCANCEL, EDITOR_HELP});
    const int group = 3 * button + 2 * gap;
    const int width = std::max({scaled(kGraphWidth), layout.labelWidth(POINT_HINT), 2 * group + 3 * gap});
    int y = margin;
    layout.place(POINT_HINT, margin, y, width, layout.lineHeight());
    y += layout.lineHeight() + gap;
    layout.place(POINT_GRAPH, margin, y, width, scaled(kGraphHeight));
    y += scaled(kGraphHeight) + gap;
    const int field = layout.textWidth("0000000") + scaled(22);
    const int behind =
        layout.placeNumber({POINT_POSITION_LABEL, POINT_POSITION, POINT_POSITION_SPIN, POINT_POSITION_UNIT}, margin, y,
                           layout.labelWidth(POINT_POSITION_LABEL), field);
    layout.placeNumber({POINT_VALUE_LABEL, POINT_VALUE, POINT_VALUE_SPIN, POINT_VALUE_UNIT}, behind + 4 * gap, y,
                       layout.labelWidth(POINT_VALUE_LABEL), field);
    y += layout.fieldHeight() + margin;
    layout.placeButtons({EDITOR_ADD, EDITOR_DELETE, EDITOR_UNDO}, margin, y, button);
    layout.placeButtons({IDOK, IDCANCEL, EDITOR_HELP}, margin + width - group, y, button);
    layout.finish(width + 2 * margin, y + layout.buttonHeight() + margin);
}

void onInitialise(HWND dialog, Editor* editor) {
    SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(editor));
    const int full = fullScale(editor->kind);
    prepareEditorButtons(dialog, editor->host);
    layOut(dialog);
    prepareSpinner(dialog, POINT_POSITION_SPIN, kLastPosition, 1);
    prepareSpinner(dialog, POINT_VALUE_SPIN, full, full / kSpinsPerFullScale);
    for (const int field : {POINT_POSITION, POINT_VALUE})
        SendDlgItemMessageA(dialog, field, EM_SETLIMITTEXT, kLongestNumber, 0);
    openPointGraph(graphOf(dialog), editor->kind, parseDataPoints(editor->text));
    SetFocus(graphOf(dialog));
}

void onCommand(HWND dialog, int control, int code) {
    const HWND graph = graphOf(dialog);
    switch (control) {
    case IDOK:
        if (canUndoGraph(graph))
            editorOf(dialog).text = formatDataPoints(graphPoints(graph));
        EndDialog(dialog, IDOK);
        break;
    case IDCANCEL:
        EndDialog(dialog, IDCANCEL);
        break;
    case EDITOR_HELP:
        showHelp(dialog, editorOf(dialog).host,
                 editorOf(dialog).kind == PointsKind::Speed ? kHelpTachPoints : kHelpAltPoints);
        break;
    case EDITOR_ADD:
        if (!addGraphPoint(graph))
            MessageBeep(MB_OK);
        break;
    case EDITOR_DELETE:
        deleteChosenPoint(graph);
        break;
    case EDITOR_UNDO:
        undoGraph(graph);
        break;
    case POINT_GRAPH:
        showChosenPoint(dialog);
        break;
    case POINT_POSITION:
    case POINT_VALUE:
        onField(dialog, control, code);
        break;
    }
}

INT_PTR dispatch(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        onInitialise(dialog, reinterpret_cast<Editor*>(lParam));
        return FALSE; // the focus is set already
    }
    if (GetWindowLongPtrA(dialog, DWLP_USER) == 0)
        return FALSE;
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

bool editDataPoints(HWND dialog, int controlId, PointsKind kind, HostParams* host) {
    const PointGraphClass graphClass;
    char text[kLongestText] = "";
    GetDlgItemTextA(dialog, controlId, text, kLongestText);
    Editor editor{kind, host, text};
    const char* box = kind == PointsKind::Speed ? "EditTachDataPointBox" : "EditAltimeterDataPointBox";
    const INT_PTR answer = runDialog(dialog, box, editorProc, reinterpret_cast<LPARAM>(&editor));
    if (answer != IDOK || editor.text == text)
        return false;
    SetDlgItemTextA(dialog, controlId, editor.text.c_str());
    InvalidateRect(GetDlgItem(dialog, controlId), nullptr, TRUE);
    return true;
}

} // namespace veldran
