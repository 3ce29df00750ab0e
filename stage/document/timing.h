// How long frames are shown: in the file, and by browsers.
#pragma once

#include "document/animation.h"
#include "document/file_format.h"

#include <span>

namespace stage {

// Milliseconds of delays of 1/100 s, cut where 32 bits end.
std::uint32_t millisecondsFromHundredths(std::uint32_t hundredths);

// The delays in hundredths: each ends where the milliseconds up to it end, rounded, so that the total time stays and no
// frame is more than half a hundredth early or late.
std::vector<std::uint32_t> delaysInHundredths(std::span<const std::uint32_t> milliseconds);

// The delay of each frame in milliseconds as a file of that format holds it: in hundredths for a GIF.
std::vector<std::uint32_t> storedDelays(const Animation& animation, OutputFormat format);

// What Chromium, Firefox and Safari make of a stored delay: 10 ms and less play as 100 ms.
std::uint32_t delayInBrowsers(std::uint32_t milliseconds);

struct PlayingTime {
    std::uint64_t stored = 0;     // ms, of the whole animation
    std::uint64_t inBrowsers = 0; // ms
    std::size_t slowedFrames = 0; // that browsers show longer than the file says
    double framesPerSecond = 0;   // as browsers show it; 0 for an animation without time
    std::size_t frames = 0;
};
// Of the delays that a file holds, as storedDelays or a reader tells them. Browsers show no MNG files: as if they did.
PlayingTime playingTime(std::span<const std::uint32_t> storedDelays);

} // namespace stage
