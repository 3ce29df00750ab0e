// The one colour that has no setting: the countdown's bezel. It lasts as long as the process.
#pragma once

#include "render/colour.h"

namespace veldran {

Colour sessionColour();
void setSessionColour(Colour colour);
void resetSessionColour();

} // namespace veldran
