// The tachometer's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openTachometer(HWND dialog, HostParams* host);
Colour tachometerBackground(HWND dialog, int transparent);

} // namespace veldran
