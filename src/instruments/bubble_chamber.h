// The bubble chamber's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openBubbleChamber(HWND dialog, HostParams* host);
Colour bubbleChamberBackground(HWND dialog, int transparent);

} // namespace veldran
