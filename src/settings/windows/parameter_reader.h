// Reading parameters back from the dialog's controls, and showing one instrument's controls at a time. Instruments read
// everything that they draw by through this file.
#pragma once

#include "render/colour.h"
#include "settings/curve_points.h"

#include <span>
#include <string>
#include <vector>

#include <windows.h>

namespace veldran {

// The integer in a number field, clamped to the range that its spinner carries as window text ("minimum,maximum,
// default"; 0 to 100 without one). Signed when the minimum is negative. An empty field counts as 0 before clamping.
int readParameter(HWND dialog, int controlId);

// The whole text of a control.
std::string readText(HWND dialog, int controlId);

bool isChecked(HWND dialog, int controlId);

// Whether a check box is checked and can be used.
bool isCheckedAndEnabled(HWND dialog, int controlId);

// The colour of a swatch.
Colour readColour(HWND dialog, int controlId);
void setColour(HWND dialog, int controlId, Colour colour);

// The points of a curve.
CurvePoints readCurve(HWND dialog, int controlId);

// The chosen entry of a choice list as a signed integer; 0 when none is chosen.
int readChoiceNumber(HWND dialog, int controlId);

// The position of the chosen entry of a choice list; 0 when none is chosen.
int readChoicePosition(HWND dialog, int controlId);

// The lines of a list box in order; lines that cannot be read are left out.
std::vector<std::string> readLines(HWND dialog, int controlId);

// Shows the instrument controls (identities 100 to 670 and their spinners) that `controls` names and hides the others;
// controls outside of that range are left alone. An empty list hides all.
void showControls(HWND dialog, std::span<const int> controls);

} // namespace veldran
