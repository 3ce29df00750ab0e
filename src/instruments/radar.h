// The radar's entries for the effect registry.
#pragma once

#include "instruments/effect_registry.h"

namespace veldran {

int radarPreview(BuildContext* context);
int radarBuild(BuildContext* context);
Colour radarBackground(HWND dialog, int transparent);

} // namespace veldran
