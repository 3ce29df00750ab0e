// The radar's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openRadar(HWND dialog, HostParams* host);
Colour radarBackground(HWND dialog, int transparent);

} // namespace veldran
