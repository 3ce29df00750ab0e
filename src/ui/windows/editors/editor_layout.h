// What the editors' dialogs share: placing controls by the size of their text, and buttons in the host's look.
#pragma once

#include "abi/plugin_abi.h"

#include <initializer_list>

#include <windows.h>

namespace veldran {

// Gives all buttons of a dialog the host's look, IDOK as the default one. A null `host` has the system's buttons.
void prepareEditorButtons(HWND dialog, const HostParams* host);
// Answers WM_DRAWITEM of such a button.
void drawEditorButton(const DRAWITEMSTRUCT& item, const HostParams* host);

// Made when a dialog opens; gives the plugin's font to all its controls. All lengths are pixels of the dialog's client
// area.
class EditorLayout {
public:
    explicit EditorLayout(HWND dialog);

    int lineHeight() const { return lineHeight_; }
    int fieldHeight() const;
    int buttonHeight() const;
    int gap() const;
    int margin() const;

    int textWidth(const char* text) const; // a mnemonic's "&" apart
    int labelWidth(int control) const;     // of the control's own text
    int buttonWidth(std::initializer_list<int> buttons) const;

    void place(int control, int x, int y, int width, int height) const;
    // Places controls of one width and a button's height side by side from `x` on; the place behind the last.
    int placeButtons(std::initializer_list<int> buttons, int x, int y, int width) const;
    // Places label, field with spinner and unit side by side from `x` on, `label` and `field` wide; the place behind.
    int placeNumber(const int (&controls)[4], int x, int y, int label, int field) const;
    // Places the text of a line beside fields so that both stand on one baseline.
    void placeLabel(int control, int x, int y, int width) const;

    // Gives the dialog its size and centres it on its owner, within the screen.
    void finish(int clientWidth, int clientHeight) const;

private:
    HWND dialog_;
    HFONT font_;
    int lineHeight_;
};

} // namespace veldran
