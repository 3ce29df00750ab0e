// The curve control, window class "VeldranCurve": five points over its width, dragged with the mouse or chosen with
// left and right and moved with up and down. The window text is a label at its left. Its parent hears of a person's
// changes as WM_COMMAND with EN_CHANGE.
#pragma once

#include <cstdint>

#include <windows.h>

namespace veldran {

inline constexpr char kCurveClass[] = "VeldranCurve";

// Before a dialog with such controls is made, and after it has gone.
void registerCurveClass(HINSTANCE module);
void unregisterCurveClass(HINSTANCE module);

// The five heights as one number, see settings/curve_points.h; kept in the window's GWLP_USERDATA. Setting it does not
// notify the parent.
std::uint32_t curveValue(HWND control);
void setCurveValue(HWND control, std::uint32_t value);

// How many pixels at the left are the label's; none at first.
void setCurveLabelWidth(HWND control, int width);

} // namespace veldran
