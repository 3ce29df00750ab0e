// Countdown: its background.
#include "instruments/countdown.h"

#include "instruments/frame_loop.h"
#include "settings/output_options.h"
#include "settings/parameter_reader.h"

namespace veldran {

Colour countdownBackground(HWND dialog, int) {
    constexpr Colour kBlack = 0;
    return backgroundOr(dialog, isChecked(dialog, kControlAlpha) ? kBlack : kNoColour);
}

} // namespace veldran
