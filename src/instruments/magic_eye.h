// The entries of the magic eye for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openMagicEye(HWND dialog, HostParams* host);
Colour magicEyeBackground(HWND dialog, int transparent);

} // namespace veldran
