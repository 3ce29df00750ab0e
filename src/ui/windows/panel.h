// The parameter panels of all instruments, made from their tables. All are created together; one is shown.
#pragma once

#include "ui/windows/controls/parameter_control.h"

#include <optional>
#include <span>

namespace veldran {

// The parameters of an effect's row with the identities of their controls.
std::span<const BoundParameter> panelOf(int effect);

// The parameter whose control, or whose play button, has this identity.
std::optional<BoundParameter> parameterOfControl(int control);

void createPanels(HWND dialog);
// Lays one effect's panel out in an area, in two columns. Done when the panel is shown: most never are.
void placePanel(HWND dialog, int effect, const RECT& area);
void fillPanels(HWND dialog);
void savePanels(HWND dialog);

// Sets the parameters of one effect back to their built-in defaults.
void resetPanel(HWND dialog, int effect, std::uint32_t hostFlags);

} // namespace veldran
