// The stopwatch's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openStopwatch(HWND dialog, HostParams* host);
Colour stopwatchBackground(HWND dialog, int transparent);

} // namespace veldran
