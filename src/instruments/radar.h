// The radar's entries for the effect registry.
#pragma once

#include "instruments/effect_registry.h"

namespace veldran {

int radarPreview(BuildContext* context);
int radarBuild(BuildContext* context);
std::unique_ptr<FrameSequence> radarOpen(HWND dialog);
Colour radarBackground(HWND dialog, int transparent);

} // namespace veldran
