// The entries of the meters made of LEDs for the effect registry.
#pragma once

#include "instruments/frame_loop.h"

namespace veldran {

std::unique_ptr<FrameSequence> openVerticalVuMeter(HWND dialog, HostParams* host);
Colour verticalVuMeterBackground(HWND dialog, int transparent);

std::unique_ptr<FrameSequence> openHorizontalVuMeter(HWND dialog, HostParams* host);
Colour horizontalVuMeterBackground(HWND dialog, int transparent);

std::unique_ptr<FrameSequence> openSpectrum(HWND dialog, HostParams* host);
Colour spectrumBackground(HWND dialog, int transparent);

} // namespace veldran
