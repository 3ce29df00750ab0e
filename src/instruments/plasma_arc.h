// The plasma arc's entries for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openPlasmaArc(HWND dialog, HostParams* host);
Colour plasmaArcBackground(HWND dialog, int transparent);

} // namespace veldran
