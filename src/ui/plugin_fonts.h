// The three fonts of one invocation.
#pragma once

#include "base/gdi.h"

namespace veldran {

struct PluginFonts {
    Font labelFont;
    Font controlFont; // sent to every control that the dialog creates
    Font smallFont;
};

// Makes the fonts; a font that cannot be made is empty, and controls then keep the system's.
PluginFonts createPluginFonts();

// The fonts that dialogs use; null outside of an invocation.
void setCurrentFonts(const PluginFonts* fonts);
const PluginFonts* currentFonts();

} // namespace veldran
