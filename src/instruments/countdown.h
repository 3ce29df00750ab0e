// The countdown's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openCountdown(HWND dialog, HostParams* host);

// Black behind alpha frames or the colour set for them; kNoColour without alpha, since the panel fills the frame. For
// every instrument of which that is true.
Colour countdownBackground(HWND dialog, int transparent);

} // namespace veldran
