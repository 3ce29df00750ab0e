// The sound map's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openSoundMap(HWND dialog, HostParams* host);
Colour soundMapBackground(HWND dialog, int transparent);

} // namespace veldran
