// The three fonts of one invocation.
#pragma once

#include "base/windows/gdi.h"

namespace veldran {

struct PluginFonts {
    Font labelFont;
    Font controlFont; // sent to every control that the dialog creates
    Font smallFont;
};

// The fonts that dialogs use; null outside of an invocation.
const PluginFonts* currentFonts();

// Makes the fonts at the current text size and lets dialogs use them for the scope's life. A font that cannot be made
// is empty, and controls then keep the system's.
class CurrentFonts {
public:
    CurrentFonts();
    CurrentFonts(const CurrentFonts&) = delete;
    CurrentFonts& operator=(const CurrentFonts&) = delete;
    ~CurrentFonts();

private:
    PluginFonts fonts_;
};

} // namespace veldran
