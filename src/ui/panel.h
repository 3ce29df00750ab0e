// The parameter panels of all instruments, made from their tables. All are created together; one is shown.
#pragma once

#include <windows.h>

namespace veldran {

void createPanels(HWND dialog);
// Lays every panel out in the same area, in two columns.
void placePanels(HWND dialog, const RECT& area);
void fillPanels(HWND dialog);
void savePanels(HWND dialog);

} // namespace veldran
