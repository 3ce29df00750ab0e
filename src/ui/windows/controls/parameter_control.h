// One parameter's controls: made, placed, filled from settings and saved to them, all from its row.
#pragma once

#include "abi/plugin_abi.h"
#include "settings/parameter.h"

#include <string>

#include <windows.h>

namespace veldran {

// A parameter row with the identities of its label (0 when the control labels itself) and of its control.
struct BoundParameter {
    const ParameterRow* row;
    int label;
    int control;

    int playButton() const { return control + 1; } // of a playable sound
};

enum class InitialVisibility : bool { Hidden, Shown };

// Creates label, control, spinner and play button as children of the dialog, in tab order, without place or content.
void createParameter(HWND dialog, const BoundParameter& parameter, InitialVisibility visibility);

// Places a label and its control side by side in `cell`; a control that labels itself takes the whole cell.
void placeParameter(HWND dialog, const BoundParameter& parameter, const RECT& cell, int labelWidth);

// Shows the value that `settings` hold; what lies outside of the range is clamped, an unknown choice becomes the
// default one. Marker lists and colours without a setting show what was stored last.
void fillParameter(HWND dialog, const BoundParameter& parameter, const PlugInSettings& settings);

// Shows the built-in default.
void resetParameter(HWND dialog, const BoundParameter& parameter, std::uint32_t hostFlags);

// Stores what the control shows in the settings of this process.
void saveParameter(HWND dialog, const BoundParameter& parameter);

// Lets the person edit a parameter whose control is a button: chooses a colour or a file, or opens an editor. True when
// the value changed.
bool editParameter(HWND dialog, const BoundParameter& parameter, HostParams* host);

// Draws a parameter's owner-drawn control.
void drawParameter(const DRAWITEMSTRUCT& item, const BoundParameter& parameter);

// A number that names a choice shows the choice's name behind its label; called when the field has changed.
void refreshChoiceName(HWND dialog, const BoundParameter& parameter);

// What the tool tip of a number field or of the marker list says; empty for other kinds.
std::string tipFor(const BoundParameter& parameter);

// The width in pixels of the text beside the control; 0 without one.
int labelWidthOf(HWND dialog, const BoundParameter& parameter);

// Creates a child control with the dialog's font.
HWND createChild(HWND dialog, const char* windowClass, const char* text, DWORD style, DWORD extendedStyle,
                 int identity);

// The size of a text in the font of a control.
SIZE textExtent(HWND control, const std::string& text);

} // namespace veldran
