// The analog VU meters' entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openRectangularVuMeter(HWND dialog, HostParams* host);
Colour rectangularVuMeterBackground(HWND dialog, int transparent);

std::unique_ptr<FrameSequence> openRoundVuMeter(HWND dialog, HostParams* host);
Colour roundVuMeterBackground(HWND dialog, int transparent);

} // namespace veldran
