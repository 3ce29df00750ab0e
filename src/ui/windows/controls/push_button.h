// Push buttons that match the host's: the system's own, or one of four drawn looks. A drawn button answers the keyboard
// and fast clicks like the system's once preparePushButton has seen it.
#pragma once

#include <cstdint>

#include <windows.h>

namespace veldran {

// Whether Enter presses the button from anywhere in its dialog.
enum class ButtonRole : bool { Ordinary, Default };

// The type bits of a button for HostParams::buttonStyle: BS_PUSHBUTTON for look 0, else BS_OWNERDRAW.
DWORD pushButtonStyle(std::uint32_t buttonStyle);

// Gives a button the look's style and its role. One button of a dialog is the default one.
void preparePushButton(HWND button, std::uint32_t buttonStyle, ButtonRole role);

// Draws a button in one of the looks 1, 2, 3, and a fourth for any other number: pressed, disabled, default and focus
// states, mnemonic underlined. `isDefault` counts for a button that was not prepared; a prepared one knows, since the
// button with the focus is the default one for as long as it has it.
void drawPushButton(const DRAWITEMSTRUCT& item, std::uint32_t buttonStyle, bool isDefault);

} // namespace veldran
