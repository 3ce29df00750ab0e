// The Lissajous figure's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openLissajous(HWND dialog, HostParams* host);
Colour lissajousBackground(HWND dialog, int transparent);

} // namespace veldran
