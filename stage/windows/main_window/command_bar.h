// A row of buttons with signs, each of which sends its command to the parent window as a menu does. The Tab key reaches
// the row, arrow keys the buttons in it; a tip tells each button's name.
#pragma once

#include "windows/main_window/icons.h"

#include <vector>

namespace stage {

struct CommandButton {
    int command = 0; // 0: a gap
    Sign sign = Sign::Open;
    const wchar_t* tip = L"";
};

class CommandBar {
public:
    CommandBar(HWND parent, std::span<const CommandButton> buttons);

    // Places the row into the parent; all lengths follow from the scaling. Answers its width.
    int place(int left, int top, int height, int dpi);
    void setEnabled(int command, bool isEnabled);
    void setSign(int command, Sign sign);

    // Answers the parent's WM_DRAWITEM; false when it is about another control.
    bool draw(const DRAWITEMSTRUCT& item) const;

private:
    struct Button {
        CommandButton shown;
        HWND window = nullptr;
    };
    static LRESULT CALLBACK buttonMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                          DWORD_PTR bar);
    Button* buttonOf(int command);
    // To the next button that can be pressed; `step` is 1 or -1.
    void moveFocus(HWND from, int step) const;

    std::vector<Button> buttons_;
    HWND hot_ = nullptr; // the button under the mouse
    HWND tips_ = nullptr;
    int signSide_ = 16;
};

} // namespace stage
