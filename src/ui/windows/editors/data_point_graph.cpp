// The state of a graph belongs to its window and goes with it; a drag lasts as long as the mouse is captured.
#include "ui/windows/editors/data_point_graph.h"

#include "base/windows/module.h"
#include "ui/edit_history.h"
#include "ui/windows/controls/buffered_paint.h"
#include "ui/windows/controls/data_point_control.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include <windowsx.h>

namespace veldran {
namespace {

constexpr char kGraphClass[] = "VeldranPointGraph";
constexpr int kGrabReach = 7;  // pixels at 100 % around a point within which it is grabbed
constexpr int kSmallStep = 5;  // thousandths
constexpr int kLargeStep = 50; // thousandths
constexpr int kPositionStep = 1;
constexpr WPARAM kUndoKey = 'Z';
constexpr LPARAM kKeyWasDown = 1 << 30; // the key repeats
constexpr COLORREF kHandle = RGB(255, 255, 255);
constexpr COLORREF kHandleRim = RGB(16, 20, 28);

struct GraphState {
    std::vector<DataPoint> points;
    std::size_t chosen = 0;
};

struct Graph {
    PointsKind kind = PointsKind::Speed;
    GraphState state;
    EditHistory<GraphState> history;
    std::unique_ptr<PointBackdrop> backdrop;
    HFONT font = nullptr; // the dialog's
};

Graph& graphOf(HWND window) {
    return *reinterpret_cast<Graph*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

void notify(HWND window) {
    InvalidateRect(window, nullptr, FALSE);
    SendMessageA(GetParent(window), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(window), EN_CHANGE),
                 reinterpret_cast<LPARAM>(window));
}

void choose(HWND window, std::size_t index) {
    GraphState& state = graphOf(window).state;
    state.chosen = std::min(index, state.points.size() - 1);
    beginGraphStep(window);
    notify(window);
}

SIZE textSize(HDC dc, const std::string& text) {
    SIZE size{};
    GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &size);
    return size;
}

int valueStep(PointsKind kind) {
    return kind == PointsKind::Speed ? 1000 : 5000;
}

// Where the curve is drawn: the window without edge, value labels on the left and position labels below. `dc` has the
// graph's font.
RECT plotBox(HWND window, HDC dc) {
    const SIZE label = textSize(dc, std::to_string(fullScale(graphOf(window).kind)));
    const int lastPosition = textSize(dc, "100%").cx; // centred on the plot's right edge
    RECT box{};
    GetClientRect(window, &box);
    return {box.left + label.cx + scaled(10), box.top + label.cy / 2 + scaled(4),
            box.right - lastPosition / 2 - scaled(6), box.bottom - label.cy - scaled(8)};
}

RECT plotBox(HWND window) {
    const HDC dc = GetDC(window);
    RECT plot{};
    {
        const Selected font(dc, graphOf(window).font);
        plot = plotBox(window, dc);
    }
    ReleaseDC(window, dc);
    return plot;
}

void drawText(HDC dc, POINT at, UINT alignment, const std::string& text) {
    const UINT previous = SetTextAlign(dc, alignment);
    TextOutA(dc, at.x, at.y, text.c_str(), static_cast<int>(text.size()));
    SetTextAlign(dc, previous);
}

void drawValueAxis(HDC dc, const RECT& plot, PointsKind kind) {
    const int full = fullScale(kind);
    const int textHeight = textSize(dc, "0").cy;
    // On a small plot every second line has a label, so that labels keep their distance.
    const int perLabel = (plot.bottom - plot.top) * valueStep(kind) / full < textHeight * 3 / 2 ? 2 : 1;
    int line = 0;
    for (int value = 0; value <= full; value += valueStep(kind), ++line) {
        const POINT at = plotPosition(plot, {0, MulDiv(value, kHighestValue, full)});
        MoveToEx(dc, plot.left, at.y, nullptr);
        LineTo(dc, plot.right, at.y);
        if (line % perLabel == 0)
            drawText(dc, {plot.left - scaled(6), at.y - textHeight / 2}, TA_RIGHT | TA_TOP, std::to_string(value));
    }
}

void drawPositionAxis(HDC dc, const RECT& plot) {
    constexpr int kStep = 10;
    for (int position = 0; position <= kLastPosition; position += kStep) {
        const POINT at = plotPosition(plot, {position, 0});
        MoveToEx(dc, at.x, plot.top, nullptr);
        LineTo(dc, at.x, plot.bottom);
        if (position % (2 * kStep) == 0)
            drawText(dc, {at.x, plot.bottom + scaled(4)}, TA_CENTER | TA_TOP, std::to_string(position) + "%");
    }
}

void drawAxes(HDC dc, const RECT& plot, PointsKind kind) {
    const COLORREF faint = kind == PointsKind::Speed ? RGB(72, 76, 82) : RGB(150, 184, 216);
    const Pen pen(CreatePen(PS_SOLID, 1, faint));
    const Selected selected(dc, pen.get());
    const TextStyle style(dc, GetSysColor(COLOR_BTNTEXT));
    drawValueAxis(dc, plot, kind);
    drawPositionAxis(dc, plot);
}

void drawHandles(HDC dc, const RECT& plot, const GraphState& state, COLORREF chosenColour) {
    const Pen pen(CreatePen(PS_SOLID, 1, kHandleRim));
    const Selected selectedPen(dc, pen.get());
    for (std::size_t i = 0; i < state.points.size(); ++i) {
        const bool chosen = i == state.chosen;
        const POINT at = plotPosition(plot, state.points[i]);
        const int reach = scaled(chosen ? 5 : 3);
        const Brush brush(CreateSolidBrush(chosen ? chosenColour : kHandle));
        const Selected selectedBrush(dc, brush.get());
        Rectangle(dc, at.x - reach, at.y - reach, at.x + reach + 1, at.y + reach + 1);
    }
}

void onPaint(HWND window) {
    const Graph& graph = graphOf(window);
    const BufferedPaint paint(window);
    const HDC dc = paint.dc();
    FillRect(dc, &paint.box(), GetSysColorBrush(COLOR_BTNFACE));
    const Selected font(dc, graph.font);
    const RECT plot = plotBox(window, dc);
    graph.backdrop->draw(dc, plot);
    drawAxes(dc, plot, graph.kind);
    drawPointCurve(dc, plot, graph.state.points, scaled(2));
    drawHandles(dc, plot, graph.state, GetSysColor(COLOR_HIGHLIGHT));
    if (GetFocus() == window) {
        RECT focus = paint.box();
        DrawFocusRect(dc, &focus);
    }
}

// The point under the mouse, the nearest when several are.
std::optional<std::size_t> pointUnder(HWND window, POINT place) {
    const RECT plot = plotBox(window);
    const std::vector<DataPoint>& points = graphPoints(window);
    std::optional<std::size_t> nearest;
    int distance = scaled(kGrabReach) + 1;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const POINT at = plotPosition(plot, points[i]);
        const auto away = static_cast<int>(std::max(std::abs(at.x - place.x), std::abs(at.y - place.y)));
        if (away < distance) {
            distance = away;
            nearest = i;
        }
    }
    return nearest;
}

bool insertPoint(HWND window, DataPoint point) {
    Graph& graph = graphOf(window);
    beginGraphStep(window);
    const std::optional<std::size_t> index = insertDataPoint(graph.state.points, point);
    if (!index)
        return false;
    graph.history.changed();
    graph.state.chosen = *index;
    notify(window);
    return true;
}

void onButtonDown(HWND window, POINT place) {
    SetFocus(window);
    const std::optional<std::size_t> under = pointUnder(window, place);
    if (under)
        choose(window, *under);
    else if (!insertPoint(window, pointAtPlace(plotBox(window), place))) {
        MessageBeep(MB_OK);
        return;
    }
    SetCapture(window);
}

void onMouseMove(HWND window, POINT place) {
    if (GetCapture() == window)
        moveChosenPoint(window, pointAtPlace(plotBox(window), place));
}

void onRightButton(HWND window, POINT place) {
    SetFocus(window);
    if (const std::optional<std::size_t> under = pointUnder(window, place)) {
        choose(window, *under);
        if (!deleteChosenPoint(window))
            MessageBeep(MB_OK);
    }
}

void nudge(HWND window, int positions, int values) {
    DataPoint target = graphPoints(window)[chosenGraphPoint(window)];
    target.position += positions;
    target.value += values;
    moveChosenPoint(window, target);
}

void onArrow(HWND window, int direction) {
    const std::size_t chosen = chosenGraphPoint(window);
    if (GetKeyState(VK_CONTROL) < 0)
        nudge(window, direction * kPositionStep, 0);
    else if (direction > 0)
        choose(window, chosen + 1);
    else if (chosen > 0)
        choose(window, chosen - 1);
}

void onKey(HWND window, WPARAM key, LPARAM flags) {
    if ((flags & kKeyWasDown) == 0)
        beginGraphStep(window);
    switch (key) {
    case VK_LEFT:
        return onArrow(window, -1);
    case VK_RIGHT:
        return onArrow(window, 1);
    case VK_UP:
        return nudge(window, 0, kSmallStep);
    case VK_DOWN:
        return nudge(window, 0, -kSmallStep);
    case VK_PRIOR:
        return nudge(window, 0, kLargeStep);
    case VK_NEXT:
        return nudge(window, 0, -kLargeStep);
    case VK_HOME:
        return choose(window, 0);
    case VK_END:
        return choose(window, graphPoints(window).size() - 1);
    case VK_INSERT:
        addGraphPoint(window);
        return;
    case VK_DELETE:
        deleteChosenPoint(window);
        return;
    case kUndoKey:
        if (GetKeyState(VK_CONTROL) < 0)
            undoGraph(window);
        return;
    }
}

LRESULT dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    switch (message) {
    case WM_PAINT:
        onPaint(window);
        return 0;
    // NOLINTNEXTLINE(bugprone-branch-clone): answers that are equal by chance
    case WM_ERASEBKGND:
        return 1; // painting covers everything
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_LBUTTONDOWN:
        onButtonDown(window, place);
        return 0;
    case WM_MOUSEMOVE:
        onMouseMove(window, place);
        return 0;
    case WM_LBUTTONUP:
        if (GetCapture() == window)
            ReleaseCapture();
        return 0;
    case WM_RBUTTONDOWN:
        onRightButton(window, place);
        return 0;
    case WM_KEYDOWN:
        onKey(window, wParam, lParam);
        return 0;
    case WM_SETFONT:
        graphOf(window).font = reinterpret_cast<HFONT>(wParam);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(graphOf(window).font);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(window, nullptr, FALSE);
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

// Nothing is thrown across the window procedure: what runs out of memory here is left undone.
LRESULT CALLBACK graphProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        if (message == WM_NCCREATE) {
            auto graph = std::make_unique<Graph>();
            graph->state.points = editableDataPoints({});
            graph->backdrop = std::make_unique<PointBackdrop>(PointsKind::Speed);
            SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(graph.release()));
        } else if (GetWindowLongPtrA(window, GWLP_USERDATA) == 0) {
            return DefWindowProcA(window, message, wParam, lParam);
        } else if (message == WM_NCDESTROY) {
            delete &graphOf(window);
            SetWindowLongPtrA(window, GWLP_USERDATA, 0);
            return DefWindowProcA(window, message, wParam, lParam);
        }
        return dispatch(window, message, wParam, lParam);
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

} // namespace

PointGraphClass::PointGraphClass() {
    WNDCLASSEXA description{};
    description.cbSize = sizeof description;
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = graphProc;
    description.hInstance = moduleInstance();
    description.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_CROSS));
    description.lpszClassName = kGraphClass;
    RegisterClassExA(&description);
}

PointGraphClass::~PointGraphClass() {
    UnregisterClassA(kGraphClass, moduleInstance());
}

void openPointGraph(HWND window, PointsKind kind, std::vector<DataPoint> points) {
    Graph& graph = graphOf(window);
    graph.kind = kind;
    graph.backdrop = std::make_unique<PointBackdrop>(kind);
    graph.state = {editableDataPoints(std::move(points)), 0};
    graph.history = {};
    beginGraphStep(window);
    notify(window);
}

const std::vector<DataPoint>& graphPoints(HWND window) {
    return graphOf(window).state.points;
}

std::size_t chosenGraphPoint(HWND window) {
    return graphOf(window).state.chosen;
}

bool isGraphEnd(HWND window, std::size_t index) {
    return index == 0 || index + 1 == graphPoints(window).size();
}

void moveChosenPoint(HWND window, DataPoint target) {
    Graph& graph = graphOf(window);
    const std::vector<DataPoint> before = graph.state.points;
    moveDataPoint(graph.state.points, graph.state.chosen, target);
    if (graph.state.points == before)
        return;
    graph.history.changed();
    notify(window);
}

void beginGraphStep(HWND window) {
    Graph& graph = graphOf(window);
    graph.history.begin(graph.state);
}

bool addGraphPoint(HWND window) {
    const std::vector<DataPoint>& points = graphPoints(window);
    const std::size_t chosen = chosenGraphPoint(window);
    const auto gapAfter = [&points](std::size_t index) {
        return index + 1 < points.size() ? points[index + 1].position - points[index].position : 0;
    };
    const std::size_t left = chosen > 0 && gapAfter(chosen - 1) > gapAfter(chosen) ? chosen - 1 : chosen;
    const DataPoint& from = points[left];
    const DataPoint& to = points[left + 1];
    return insertPoint(window, {(from.position + to.position) / 2, (from.value + to.value) / 2});
}

bool deleteChosenPoint(HWND window) {
    Graph& graph = graphOf(window);
    beginGraphStep(window);
    if (!removeDataPoint(graph.state.points, graph.state.chosen))
        return false;
    graph.history.changed();
    notify(window);
    return true;
}

bool canUndoGraph(HWND window) {
    return graphOf(window).history.canUndo();
}

void undoGraph(HWND window) {
    Graph& graph = graphOf(window);
    if (!graph.history.canUndo())
        return;
    graph.state = graph.history.undo();
    notify(window);
}

} // namespace veldran
