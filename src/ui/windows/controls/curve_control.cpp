// The chosen point and the font live in the window's extra bytes; a drag lasts as long as the mouse is captured.
#include "ui/windows/controls/curve_control.h"

#include "settings/curve_points.h"
#include "ui/windows/controls/buffered_paint.h"
#include "ui/windows/controls/control_edge.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <array>
#include <string>

#include <windowsx.h>

namespace veldran {
namespace {

constexpr int kChosenPoint = 0; // offsets of the extra bytes
constexpr int kFont = sizeof(LONG_PTR);
constexpr int kLabelWidth = 2 * sizeof(LONG_PTR);
constexpr int kExtraBytes = 3 * sizeof(LONG_PTR);
constexpr int kLabelDrop = 3; // as labels beside fields stand
constexpr int kLargeStep = 8; // of 31, by Page Up and Page Down
constexpr int kGridLines = 3; // quarters of the height

int chosenPoint(HWND control) {
    return static_cast<int>(GetWindowLongPtrA(control, kChosenPoint));
}

void choosePoint(HWND control, int point) {
    SetWindowLongPtrA(control, kChosenPoint, std::clamp(point, 0, kCurvePointCount - 1));
    InvalidateRect(control, nullptr, FALSE);
}

// The framed part, right of the label.
RECT frameBox(HWND control) {
    RECT box{};
    GetClientRect(control, &box);
    box.left += static_cast<LONG>(GetWindowLongPtrA(control, kLabelWidth));
    return box;
}

// Where points lie: inside the frame, with room for the outermost handles.
RECT plotBox(HWND control) {
    RECT box = frameBox(control);
    InflateRect(&box, -scaled(7), -scaled(7));
    return box;
}

POINT pointAt(const RECT& plot, int index, int height) {
    return {plot.left + MulDiv(plot.right - 1 - plot.left, index, kCurvePointCount - 1),
            plot.bottom - 1 - MulDiv(plot.bottom - 1 - plot.top, height, kHighestCurvePoint)};
}

void changePoint(HWND control, int height) {
    CurvePoints points = unpackCurve(curveValue(control));
    int& point = points[static_cast<std::size_t>(chosenPoint(control))];
    const int wanted = std::clamp(height, 0, kHighestCurvePoint);
    if (point == wanted)
        return;
    point = wanted;
    setCurveValue(control, packCurve(points));
    SendMessageA(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), EN_CHANGE),
                 reinterpret_cast<LPARAM>(control));
}

void dragTo(HWND control, int y) {
    const RECT plot = plotBox(control);
    const int travel = std::max<int>(plot.bottom - 1 - plot.top, 1);
    changePoint(control, MulDiv(plot.bottom - 1 - y, kHighestCurvePoint, travel));
}

void onButtonDown(HWND control, int x, int y) {
    const RECT plot = plotBox(control);
    const int travel = std::max<int>(plot.right - 1 - plot.left, 1);
    SetFocus(control);
    SetCapture(control);
    choosePoint(control, MulDiv(x - plot.left, kCurvePointCount - 1, travel));
    dragTo(control, y);
}

void onKey(HWND control, WPARAM key) {
    const int point = chosenPoint(control);
    const int height = unpackCurve(curveValue(control))[static_cast<std::size_t>(point)];
    switch (key) {
    case VK_LEFT:
        return choosePoint(control, point - 1);
    case VK_RIGHT:
        return choosePoint(control, point + 1);
    case VK_UP:
        return changePoint(control, height + 1);
    case VK_DOWN:
        return changePoint(control, height - 1);
    case VK_PRIOR:
        return changePoint(control, height + kLargeStep);
    case VK_NEXT:
        return changePoint(control, height - kLargeStep);
    case VK_HOME:
        return changePoint(control, kHighestCurvePoint);
    case VK_END:
        return changePoint(control, 0);
    }
}

void drawGrid(HDC dc, const RECT& plot) {
    const Pen pen(CreatePen(PS_SOLID, 1, GetSysColor(COLOR_3DLIGHT)));
    const Selected selected(dc, pen.get());
    for (int i = 0; i < kCurvePointCount; ++i) {
        const int x = pointAt(plot, i, 0).x;
        MoveToEx(dc, x, plot.top, nullptr);
        LineTo(dc, x, plot.bottom);
    }
    for (int i = 0; i <= kGridLines + 1; ++i) {
        const int y = plot.top + MulDiv(plot.bottom - 1 - plot.top, i, kGridLines + 1);
        MoveToEx(dc, plot.left, y, nullptr);
        LineTo(dc, plot.right, y);
    }
}

void drawHandle(HDC dc, POINT at, COLORREF colour, COLORREF rim) {
    const int reach = scaled(3);
    const Brush brush(CreateSolidBrush(colour));
    const Pen pen(CreatePen(PS_SOLID, 1, rim));
    const Selected selectedBrush(dc, brush.get());
    const Selected selectedPen(dc, pen.get());
    Rectangle(dc, at.x - reach, at.y - reach, at.x + reach + 1, at.y + reach + 1);
}

void drawCurve(HWND control, HDC dc, const RECT& plot) {
    const bool enabled = IsWindowEnabled(control) != FALSE;
    const COLORREF line = GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
    const CurvePoints heights = unpackCurve(curveValue(control));
    std::array<POINT, kCurvePointCount> points{};
    for (int i = 0; i < kCurvePointCount; ++i)
        points[static_cast<std::size_t>(i)] = pointAt(plot, i, heights[static_cast<std::size_t>(i)]);
    {
        const Pen pen(CreatePen(PS_SOLID, scaled(2), line));
        const Selected selected(dc, pen.get());
        Polyline(dc, points.data(), kCurvePointCount);
    }
    const bool focused = GetFocus() == control;
    for (int i = 0; i < kCurvePointCount; ++i) {
        const bool chosen = focused && i == chosenPoint(control);
        drawHandle(dc, points[static_cast<std::size_t>(i)], GetSysColor(chosen ? COLOR_HIGHLIGHT : COLOR_WINDOW), line);
    }
}

void drawLabel(HWND control, HDC dc, RECT box) {
    char text[64] = "";
    GetWindowTextA(control, text, static_cast<int>(sizeof text));
    const Selected font(dc, reinterpret_cast<HGDIOBJ>(GetWindowLongPtrA(control, kFont)));
    const TextStyle style(dc, GetSysColor(IsWindowEnabled(control) ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
    box.top += scaled(kLabelDrop);
    DrawTextA(dc, text, -1, &box, DT_LEFT | DT_TOP | DT_SINGLELINE | DT_NOPREFIX);
}

void onPaint(HWND control) {
    const BufferedPaint paint(control);
    RECT box = paint.box();
    FillRect(paint.dc(), &box, GetSysColorBrush(COLOR_BTNFACE));
    drawLabel(control, paint.dc(), box);
    RECT inside =
        drawControlEdge(paint.dc(), frameBox(control), false, IsWindowEnabled(control) ? COLOR_WINDOW : COLOR_BTNFACE);
    const RECT plot = plotBox(control);
    drawGrid(paint.dc(), plot);
    drawCurve(control, paint.dc(), plot);
    if (GetFocus() == control) {
        InflateRect(&inside, -1, -1);
        DrawFocusRect(paint.dc(), &inside);
    }
}

LRESULT CALLBACK curveProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_PAINT:
        onPaint(control);
        return 0;
    // NOLINTNEXTLINE(bugprone-branch-clone): answers that are equal by chance
    case WM_ERASEBKGND:
        return 1; // painting covers everything
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_LBUTTONDOWN:
        onButtonDown(control, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return 0;
    case WM_MOUSEMOVE:
        if (GetCapture() == control)
            dragTo(control, GET_Y_LPARAM(lParam));
        return 0;
    case WM_LBUTTONUP:
        if (GetCapture() == control)
            ReleaseCapture();
        return 0;
    case WM_KEYDOWN:
        onKey(control, wParam);
        return 0;
    case WM_SETFONT:
        SetWindowLongPtrA(control, kFont, static_cast<LONG_PTR>(wParam));
        InvalidateRect(control, nullptr, FALSE);
        return 0;
    case WM_GETFONT:
        return GetWindowLongPtrA(control, kFont);
    case WM_SETTEXT:
    case WM_ENABLE:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(control, nullptr, FALSE);
        return DefWindowProcA(control, message, wParam, lParam);
    default:
        return DefWindowProcA(control, message, wParam, lParam);
    }
}

} // namespace

void registerCurveClass(HINSTANCE module) {
    WNDCLASSEXA description{};
    description.cbSize = sizeof description;
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = curveProc;
    description.cbWndExtra = kExtraBytes;
    description.hInstance = module;
    description.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    description.lpszClassName = kCurveClass;
    RegisterClassExA(&description);
}

void unregisterCurveClass(HINSTANCE module) {
    UnregisterClassA(kCurveClass, module);
}

std::uint32_t curveValue(HWND control) {
    return static_cast<std::uint32_t>(GetWindowLongPtrA(control, GWLP_USERDATA));
}

void setCurveLabelWidth(HWND control, int width) {
    SetWindowLongPtrA(control, kLabelWidth, width);
    InvalidateRect(control, nullptr, FALSE);
}

void setCurveValue(HWND control, std::uint32_t value) {
    SetWindowLongPtrA(control, GWLP_USERDATA, static_cast<LONG_PTR>(value));
    InvalidateRect(control, nullptr, FALSE);
}

} // namespace veldran
