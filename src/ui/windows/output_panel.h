// The main dialog's own controls: effect list, output options, preview area, buttons.
#pragma once

#include <cstdint>
#include <map>

#include <windows.h>

namespace veldran {

// `buttonLook` is HostParams::buttonStyle.
void createOutputControls(HWND dialog, std::uint32_t buttonLook);
void fillOutputControls(HWND dialog);
void saveOutputControls(HWND dialog);

// Sizes the dialog, places its own controls, and centres it on the screen.
void layOutMainDialog(HWND dialog);

// Shows the panel of the row that the effect list shows, and hides all others.
void showSelectedPanel(HWND dialog);

// Enables what makes sense together: colour options only without true colour, the fixed palette only without a custom
// one, background options only without supercompression.
// A control is touched only when what makes sense for it has changed since the last time, so that a host's own enabling
// and disabling stands.
class OutputEnabling {
public:
    void refresh(HWND dialog);

private:
    void apply(HWND dialog, int control, bool enabled);

    std::map<int, bool> applied_; // by control
};

// The row that the effect list shows.
int selectedEffect(HWND dialog);

} // namespace veldran
