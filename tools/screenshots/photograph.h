// A picture of a window as the screen shows it, with whatever lies over it.
#pragma once

#include <string>

#include <windows.h>

namespace screenshots {

// Writes a bitmap file.
void photograph(HWND window, const std::string& path);

} // namespace screenshots
