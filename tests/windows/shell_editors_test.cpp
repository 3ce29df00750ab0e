// The editors as a person uses them: opened for real, driven by messages from a timer inside their modal loop. Also the
// curve control and the markers' file.
#include "base/windows/file.h"
#include "base/windows/module.h"
#include "dialog_script.h"
#include "object_count.h"
#include "resources/resource_ids.h"
#include "settings/windows/marker_store.h"
#include "settings/windows/parameter_reader.h"
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

void press(HWND window, int control) {
    SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(control), 0);
}

void key(HWND window, WPARAM code) {
    SendMessageA(window, WM_KEYDOWN, code, 0);
}

void mouse(HWND window, UINT message, int x, int y) {
    SendMessageA(window, message, MK_LBUTTON, MAKELPARAM(x, y));
}

std::string textOf(HWND window, int control) {
    return dialog_script::textOf(GetDlgItem(window, control));
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
    SendMessageA(editor, WM_COMMAND, MAKEWPARAM(MARKER_LIST, LBN_SELCHANGE), 0);
}

// The picture's radius of 100 % is 108 pixels about (120, 120): B lies at (174, 120).
TEST_F(Editors, MarkersAreEditedUntilOk) {
    const Lines before = {"A,0,10", "B,90,50,7", "C,180,70"};
    const struct {
        const char* what;
        Script script;
        Lines after;
    } cases[] = {
        {"looking at a line", [](HWND e) { chooseLine(e, 1); }, before},
        {"change",
         [](HWND e) {
             chooseLine(e, 1);
             SetDlgItemTextA(e, MARKER_NAME, "Bravo");
             SetDlgItemTextA(e, MARKER_DISTANCE, "55");
         },
         {"A,0,10", "Bravo,90,55", "C,180,70"}},
        {"add", [](HWND e) { press(e, EDITOR_ADD); }, {"A,0,10", "NEW001,0,50", "B,90,50,7", "C,180,70"}},
        {"reorder",
         [](HWND e) {
             press(e, MARKER_UP); // already first
             press(e, MARKER_DOWN);
             press(e, MARKER_DOWN);
         },
         {"B,90,50,7", "C,180,70", "A,0,10"}},
        {"undo",
         [](HWND e) {
             press(e, EDITOR_DELETE);
             press(e, MARKER_DOWN);
             SetDlgItemTextA(e, MARKER_NAME, "X");
             for (int i = 0; i < 5; ++i)
                 press(e, EDITOR_UNDO);
         },
         before},
        {"drag on the picture",
         [](HWND e) {
             const HWND picture = GetDlgItem(e, MARKER_PICTURE);
             mouse(picture, WM_LBUTTONDOWN, 175, 121);
             mouse(picture, WM_MOUSEMOVE, 120, 12);
             mouse(picture, WM_LBUTTONUP, 120, 12);
             mouse(picture, WM_MOUSEMOVE, 10, 10);
         },
         {"A,0,10", "B,0,100", "C,180,70"}},
    };
    for (const auto& c : cases) {
        setMarkers(before);
        const bool changed = driveMarkers([&c](HWND editor) {
            c.script(editor);
            press(editor, IDOK);
        });
        EXPECT_EQ(readLines(owner_, kList), c.after) << c.what;
        EXPECT_EQ(changed, c.after != before) << c.what;
    }
    setMarkers(before);
    EXPECT_FALSE(driveMarkers([](HWND e) { press(e, EDITOR_DELETE); }));
    EXPECT_EQ(readLines(owner_, kList), before) << "cancelled";
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
    const struct {
        const char* what;
        Script script; // gets the graph
        const char* after;
    } cases[] = {
        {"keys move the chosen point",
         [](HWND g) {
             key(g, VK_RIGHT);
             key(g, VK_UP);
             key(g, VK_NEXT);
         },
         "0,140;50,455;100,140"},
        {"insert and delete",
         [](HWND g) {
             key(g, VK_INSERT);
             key(g, VK_END);
             key(g, VK_INSERT);
             key(g, VK_DELETE);
         },
         "0,140;25,320;50,500;100,140"},
        {"undo",
         [](HWND g) {
             key(g, VK_UP);
             key(g, VK_INSERT);
             press(GetParent(g), EDITOR_UNDO);
         },
         "0,145;50,500;100,140"},
        {"fields in revolutions per minute",
         [](HWND g) {
             EXPECT_EQ(textOf(GetParent(g), POINT_VALUE), "1120");
             EXPECT_FALSE(IsWindowEnabled(GetDlgItem(GetParent(g), POINT_POSITION)));
             key(g, VK_RIGHT);
             EXPECT_EQ(textOf(GetParent(g), POINT_VALUE), "4000");
             SetDlgItemTextA(GetParent(g), POINT_VALUE, "8000");
             SetDlgItemTextA(GetParent(g), POINT_POSITION, "");
             SetDlgItemTextA(GetParent(g), POINT_POSITION, "75");
         },
         "0,140;75,1000;100,140"},
    };
    for (const auto& c : cases) {
        SetDlgItemTextA(owner_, kPoints, before.c_str());
        const bool changed = drivePoints(PointsKind::Speed, [&c](HWND e) {
            c.script(GetDlgItem(e, POINT_GRAPH));
            press(e, IDOK);
        });
        EXPECT_EQ(textOf(owner_, kPoints), c.after) << c.what;
        EXPECT_TRUE(changed) << c.what;
    }
    SetDlgItemTextA(owner_, kPoints, before.c_str());
    EXPECT_FALSE(drivePoints(PointsKind::Speed, [](HWND e) { key(GetDlgItem(e, POINT_GRAPH), VK_UP); }));
    EXPECT_EQ(textOf(owner_, kPoints), before) << "cancelled";
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
    const auto paint = [](HWND editor) {
        RedrawWindow(editor, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    };
    openAll(paint); // what the system keeps from the first time is no leak
    const object_count::Growth growth = object_count::leastGrowth(5, 10, [&] { openAll(paint); });
    EXPECT_LE(growth.drawing, 0);
    EXPECT_LE(growth.user, 0);
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

// Puts a file back as it was.
class KeptFile {
public:
    explicit KeptFile(std::string path) : path_(std::move(path)), bytes_(readWholeFile(path_)) {}
    ~KeptFile() {
        DeleteFileA(path_.c_str());
        if (bytes_)
            replaceFile(path_, *bytes_);
    }

private:
    std::string path_;
    std::optional<std::string> bytes_;
};

TEST(MarkerStore, TellsNoFileFromNoMarkers) {
    const std::string path = personalFolder() + "VELDRAN1.MRK";
    const KeptFile kept(path);
    DeleteFileA(path.c_str());
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
