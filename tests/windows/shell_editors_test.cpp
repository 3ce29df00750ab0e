// The editors as a person uses them: opened for real, driven by messages from a timer inside their modal loop. Also the
// curve control and the markers' file.
#include "base/windows/file.h"
#include "base/windows/module.h"
#include "dialog_script.h"
#include "object_count.h"
#include "resources/resource_ids.h"
#include "settings/windows/marker_store.h"
#include "settings/windows/parameter_reader.h"
#include "settings_folder.h"
#include "ui/windows/controls/curve_control.h"
#include "ui/windows/editors/data_point_editor.h"
#include "ui/windows/editors/marker_editor.h"
#include "ui/windows/text_scale.h"

#include <gtest/gtest.h>

#include <string>

#include <commctrl.h>

namespace veldran {
namespace {

constexpr int kList = 100;
constexpr int kPoints = 101;
constexpr int kCurve = 102;

using Lines = std::vector<std::string>;
using dialog_script::Script;
using dialog_script::textOf;

void press(HWND window, int control) {
    SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(control), 0);
}

void key(HWND window, WPARAM code) {
    SendMessageA(window, WM_KEYDOWN, code, 0);
}

void mouse(HWND window, UINT message, int x, int y) {
    SendMessageA(window, message, MK_LBUTTON, MAKELPARAM(x, y));
}

// Stands for the main dialog: a list of markers, a button with points, a curve.
class Editors : public testing::Test {
protected:
    void SetUp() override {
        setModuleInstance(GetModuleHandleA(nullptr));
        InitCommonControls();
        forceTextSize(100);
        registerCurveClass(moduleInstance());
        WNDCLASSA description{};
        description.lpfnWndProc = ownerProc;
        description.lpszClassName = "EditorsTest";
        description.hInstance = moduleInstance();
        RegisterClassA(&description);
        owner_ = CreateWindowA("EditorsTest", "", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr, nullptr,
                               moduleInstance(), nullptr);
        child("LISTBOX", kList);
        child("BUTTON", kPoints);
        MoveWindow(child(kCurveClass, kCurve), 0, 0, 115, 77, FALSE);
    }
    void TearDown() override {
        DestroyWindow(owner_);
        UnregisterClassA("EditorsTest", moduleInstance());
        unregisterCurveClass(moduleInstance());
        forceTextSize(0);
    }

    HWND child(const char* name, int identity) {
        return CreateWindowA(name, "", WS_CHILD, 0, 0, 10, 10, owner_,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(identity)), moduleInstance(), nullptr);
    }
    void setMarkers(const Lines& lines) {
        SendDlgItemMessageA(owner_, kList, LB_RESETCONTENT, 0, 0);
        for (const std::string& line : lines)
            SendDlgItemMessageA(owner_, kList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
    }
    bool driveMarkers(const Script& script) {
        return dialog_script::drive(script, [this] { return editMarkers(owner_, kList, nullptr); });
    }
    bool drivePoints(PointsKind kind, const Script& script) {
        return dialog_script::drive(script, [this, kind] { return editDataPoints(owner_, kPoints, kind, nullptr); });
    }

    static LRESULT CALLBACK ownerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_COMMAND && wParam == MAKEWPARAM(kCurve, EN_CHANGE))
            ++curveChanges_;
        return DefWindowProcA(window, message, wParam, lParam);
    }

    HWND owner_ = nullptr;
    static inline int curveChanges_ = 0;
};

void chooseLine(HWND editor, int index) {
    SendDlgItemMessageA(editor, MARKER_LIST, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    dialog_script::notify(editor, MARKER_LIST, LBN_SELCHANGE);
}

// The picture's radius of 100 % is 108 pixels about (120, 120): B lies at (174, 120).
TEST_F(Editors, MarkersAreEditedUntilOk) {
    const Lines before = {"A,0,10", "B,90,50,7", "C,180,70"};
    const auto expectEdited = [&](const char* what, const Script& script, const Lines& after) {
        setMarkers(before);
        const bool changed = driveMarkers([&](HWND editor) {
            script(editor);
            press(editor, IDOK);
        });
        EXPECT_EQ(readLines(owner_, kList), after) << what;
        EXPECT_EQ(changed, after != before) << what;
    };
    const auto buttons = [](const std::vector<int>& pressed) {
        return [pressed](HWND editor) {
            for (const int button : pressed)
                press(editor, button);
        };
    };
    expectEdited(
        "look at a line", [](HWND editor) { chooseLine(editor, 1); }, before);
    expectEdited("add", buttons({EDITOR_ADD}), {"A,0,10", "NEW001,0,50", "B,90,50,7", "C,180,70"});
    expectEdited("reorder the first", buttons({MARKER_UP, MARKER_DOWN, MARKER_DOWN}),
                 {"B,90,50,7", "C,180,70", "A,0,10"});
    const auto change = [](HWND editor) {
        chooseLine(editor, 1);
        SetDlgItemTextA(editor, MARKER_NAME, "Bravo");
        SetDlgItemTextA(editor, MARKER_DISTANCE, "55");
    };
    expectEdited("change", change, {"A,0,10", "Bravo,90,55", "C,180,70"});
    const auto undo = [&](HWND editor) {
        buttons({EDITOR_DELETE, MARKER_DOWN})(editor);
        change(editor);
        buttons({EDITOR_UNDO, EDITOR_UNDO, EDITOR_UNDO, EDITOR_UNDO, EDITOR_UNDO})(editor);
    };
    expectEdited("undo", undo, before);
    const auto drag = [](HWND editor) {
        const HWND picture = GetDlgItem(editor, MARKER_PICTURE);
        mouse(picture, WM_LBUTTONDOWN, 175, 121);
        mouse(picture, WM_MOUSEMOVE, 120, 12);
        mouse(picture, WM_LBUTTONUP, 120, 12);
        mouse(picture, WM_MOUSEMOVE, 10, 10);
    };
    expectEdited("drag on the picture", drag, {"A,0,10", "B,0,100", "C,180,70"});
    setMarkers(before);
    EXPECT_FALSE(driveMarkers(buttons({EDITOR_DELETE}))); // cancelled
    EXPECT_EQ(readLines(owner_, kList), before);
}

TEST_F(Editors, AMarkerThatCannotBeKeepsTheEditorOpen) {
    setMarkers({"A,0,10"});
    driveMarkers([](HWND editor) {
        for (const char* wrong : {"", "360"}) {
            SetDlgItemTextA(editor, MARKER_BEARING, wrong);
            EXPECT_NE(textOf(editor, MARKER_FAULT), "") << wrong;
            press(editor, IDOK);
            EXPECT_EQ(GetFocus(), GetDlgItem(editor, MARKER_BEARING)) << wrong;
        }
        SetDlgItemTextA(editor, MARKER_BEARING, "359");
        EXPECT_EQ(textOf(editor, MARKER_FAULT), "");
        press(editor, IDOK);
    });
    EXPECT_EQ(readLines(owner_, kList), Lines{"A,359,10"});
}

TEST_F(Editors, DataPointsAreEditedUntilOk) {
    const std::string before = "0,140;50,500;100,140";
    const auto edit = [&](const Script& script) {
        SetDlgItemTextA(owner_, kPoints, before.c_str());
        return drivePoints(PointsKind::Speed, script);
    };
    const struct {
        std::vector<WPARAM> keys; // in the graph; 0: undo
        const char* after;
    } cases[] = {{{VK_RIGHT, VK_UP, VK_NEXT}, "0,140;50,455;100,140"}, // move the chosen point
                 {{VK_INSERT, VK_END, VK_INSERT, VK_DELETE}, "0,140;25,320;50,500;100,140"},
                 {{VK_UP, VK_INSERT, 0}, "0,145;50,500;100,140"}};
    for (const auto& c : cases) {
        EXPECT_TRUE(edit([&c](HWND editor) {
            for (const WPARAM code : c.keys)
                code == 0 ? press(editor, EDITOR_UNDO) : key(GetDlgItem(editor, POINT_GRAPH), code);
            press(editor, IDOK);
        }));
        EXPECT_EQ(textOf(owner_, kPoints), c.after);
    }
    EXPECT_TRUE(edit([](HWND editor) { // fields in revolutions per minute
        EXPECT_EQ(textOf(editor, POINT_VALUE), "1120");
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(editor, POINT_POSITION)));
        key(GetDlgItem(editor, POINT_GRAPH), VK_RIGHT);
        EXPECT_EQ(textOf(editor, POINT_VALUE), "4000");
        SetDlgItemTextA(editor, POINT_VALUE, "8000");
        SetDlgItemTextA(editor, POINT_POSITION, "");
        SetDlgItemTextA(editor, POINT_POSITION, "75");
        press(editor, IDOK);
    }));
    EXPECT_EQ(textOf(owner_, kPoints), "0,140;75,1000;100,140");
    EXPECT_FALSE(edit([](HWND editor) { key(GetDlgItem(editor, POINT_GRAPH), VK_UP); })); // cancelled
    EXPECT_EQ(textOf(owner_, kPoints), before);
}

TEST_F(Editors, DataPointsAreDrawnWithTheMouse) {
    SetDlgItemTextA(owner_, kPoints, "0,0;100,1000");
    drivePoints(PointsKind::Altitude, [](HWND editor) {
        const HWND graph = GetDlgItem(editor, POINT_GRAPH);
        RECT box{};
        GetClientRect(graph, &box);
        mouse(graph, WM_LBUTTONDOWN, box.right / 2, 5); // added where the mouse is...
        mouse(graph, WM_MOUSEMOVE, -50, -50);           // ...and dragged as far as its neighbours let it
        mouse(graph, WM_LBUTTONUP, -50, -50);
        EXPECT_EQ(textOf(editor, POINT_POSITION), "1");
        EXPECT_EQ(textOf(editor, POINT_VALUE), "25000");
        press(editor, EDITOR_UNDO);
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(editor, EDITOR_UNDO))) << "adding and dragging is one step";
        for (const auto& [x, y] : {std::pair{box.right / 2, box.bottom}, {box.right / 3, LONG{40}}}) {
            mouse(graph, WM_LBUTTONDOWN, x, y);
            mouse(graph, WM_LBUTTONUP, x, y);
        }
        mouse(graph, WM_RBUTTONDOWN, box.right / 3, 40);
        press(editor, IDOK);
    });
    EXPECT_EQ(textOf(owner_, kPoints), "0,0;48,0;100,1000");
}

TEST_F(Editors, FitTheirTextAndFreeWhatTheyDraw) {
    setMarkers({"A,0,10", "B,90,50"});
    const auto openAll = [this](const Script& script) {
        driveMarkers(script);
        drivePoints(PointsKind::Speed, script);
        drivePoints(PointsKind::Altitude, script);
    };
    for (const int percent : {100, 150, 200}) {
        forceTextSize(percent);
        openAll([percent](HWND editor) {
            EXPECT_EQ(dialog_script::layoutFaults(editor), std::vector<std::string>()) << percent;
        });
    }
    const auto paintAll = [&] { openAll(dialog_script::redraw); };
    paintAll(); // what the system keeps from the first time is no leak
    EXPECT_FALSE(object_count::leavesObjects(5, 10, paintAll));
}

// Client area 115 x 77 with a margin of 7: points at x = 7, 32, 57, 82, 107 and heights of two pixels each, 0 at y
// = 69.
TEST_F(Editors, ACurveIsEditedWithMouseAndKeys) {
    const HWND curve = GetDlgItem(owner_, kCurve);
    setCurveValue(curve, 33292328); // 8, 1, 0, 24, 31
    curveChanges_ = 0;
    EXPECT_NE(SendMessageA(curve, WM_GETDLGCODE, 0, 0) & DLGC_WANTARROWS, 0);
    key(curve, VK_LEFT);
    key(curve, VK_RIGHT);
    key(curve, VK_UP);
    EXPECT_EQ(curveValue(curve), 33292328u + 32);
    key(curve, VK_END);
    key(curve, VK_DOWN);
    EXPECT_EQ(curveValue(curve), 33292328u - 32);
    EXPECT_EQ(curveChanges_, 2) << "the last key changed nothing";

    mouse(curve, WM_LBUTTONDOWN, 84, 69 - 2 * 5);
    EXPECT_EQ(curveValue(curve) >> 15 & 31, 5u);
    mouse(curve, WM_MOUSEMOVE, 7, -100);
    mouse(curve, WM_LBUTTONUP, 7, -100);
    mouse(curve, WM_MOUSEMOVE, 84, 69);
    EXPECT_EQ(curveValue(curve) >> 15 & 31, 31u);
    EXPECT_EQ(curveValue(curve) & 31, 8u) << "a drag stays with its point";
    EXPECT_EQ(curveChanges_, 4);
}

TEST(MarkerStore, TellsNoFileFromNoMarkers) {
    const recording::SettingsFolder folder(std::string{}); // the person's own one is moved aside
    const std::string path = personalFolder() + "VELDRAN1.MRK";
    EXPECT_EQ(loadMarkers(), std::nullopt);
    saveMarkers({"A,1,2", "B,3,4"});
    EXPECT_EQ(readWholeFile(path), "A,1,2\r\nB,3,4\r\n");
    EXPECT_EQ(loadMarkers(), (Lines{"A,1,2", "B,3,4"}));
    saveMarkers({});
    EXPECT_EQ(loadMarkers(), Lines());
    EXPECT_FALSE(readWholeFile(path + "." + std::to_string(GetCurrentProcessId())));
}

} // namespace
} // namespace veldran
