// Stopwatch: the hands after so many seconds, the delay. Drawn in the pixels of the dial and reduced at the end.
// Core: draws nothing and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "instruments/dials/stopwatch_parameters.h"

#include <cstdint>

namespace veldran {

// The control of a setting on the stopwatch's panel.
template <Setting kSetting>
inline constexpr int kStopwatchControl = kControlOf<kStopwatchParameters, kStopwatchFirstControl, kSetting>;

// What the still shows.
inline constexpr int kStopwatchStillSeconds = 18;

// Lines with a pen as wide as the geometry's unit. The small hand lies over the large one.
struct StopwatchHands {
    CanvasPoint largeCentre;
    CanvasPoint largeTip;
    CanvasPoint largeTail;
    CanvasPoint smallCentre;
    CanvasPoint smallTip;
};

// `pad` is the margin around the dial. `seconds` is 0 or more; the small hand goes on past an hour.
StopwatchHands stopwatchHands(int pad, int seconds);

// A second in the unit of a host with these flags when the watch runs in real time, else the delay that was set.
std::uint32_t stopwatchDelay(bool realTime, std::uint32_t hostFlags, std::uint32_t setDelay);

} // namespace veldran
