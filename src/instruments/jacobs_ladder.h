// Jacob's ladder's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openJacobsLadder(HWND dialog, HostParams* host);
Colour jacobsLadderBackground(HWND dialog, int transparent);

} // namespace veldran
