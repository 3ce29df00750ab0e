// The sound scan's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openSoundScan(HWND dialog, HostParams* host);
Colour soundScanBackground(HWND dialog, int transparent);

} // namespace veldran
