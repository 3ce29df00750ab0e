// The data pad's entry for the effect registry. Its background is the countdown's.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openDataPad(HWND dialog, HostParams* host);

} // namespace veldran
