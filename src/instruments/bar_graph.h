// The bar graph's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

// Null when the bar is to show an image that the host cannot load.
std::unique_ptr<FrameSequence> openBarGraph(HWND dialog, HostParams* host);
Colour barGraphBackground(HWND dialog, int transparent);

} // namespace veldran
