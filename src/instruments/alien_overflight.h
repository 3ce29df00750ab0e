// The alien overflight's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openAlienOverflight(HWND dialog, HostParams* host);
Colour alienOverflightBackground(HWND dialog, int transparent);

} // namespace veldran
