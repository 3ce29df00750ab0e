// The altimeter's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openAltimeter(HWND dialog, HostParams* host);
Colour altimeterBackground(HWND dialog, int transparent);

} // namespace veldran
