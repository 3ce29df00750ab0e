// Delays; see the header.
#include "document/timing.h"

#include <algorithm>
#include <limits>

namespace stage {
namespace {

constexpr std::uint32_t kPerHundredth = 10; // ms
constexpr std::uint32_t kLongestDelay = std::numeric_limits<std::uint32_t>::max();

} // namespace

std::uint32_t millisecondsFromHundredths(std::uint32_t hundredths) {
    return hundredths > kLongestDelay / kPerHundredth ? kLongestDelay : hundredths * kPerHundredth;
}

std::vector<std::uint32_t> delaysInHundredths(std::span<const std::uint32_t> milliseconds) {
    std::vector<std::uint32_t> hundredths;
    hundredths.reserve(milliseconds.size());
    std::uint64_t elapsed = 0; // ms
    std::uint64_t shown = 0;   // hundredths
    for (const std::uint32_t delay : milliseconds) {
        elapsed += delay;
        const std::uint64_t end = (elapsed + kPerHundredth / 2) / kPerHundredth;
        hundredths.push_back(static_cast<std::uint32_t>(end - shown));
        shown = end;
    }
    return hundredths;
}

std::vector<std::uint32_t> storedDelays(const Animation& animation, OutputFormat format) {
    std::vector<std::uint32_t> delays;
    for (const Frame& frame : animation.frames)
        delays.push_back(frame.delay);
    if (format == OutputFormat::Gif) {
        delays = delaysInHundredths(delays);
        std::ranges::transform(delays, delays.begin(), millisecondsFromHundredths);
    }
    return delays;
}

std::uint32_t delayInBrowsers(std::uint32_t milliseconds) {
    constexpr std::uint32_t kTooShort = 10;   // ms
    constexpr std::uint32_t kInsteadOf = 100; // ms
    return milliseconds <= kTooShort ? kInsteadOf : milliseconds;
}

PlayingTime playingTime(std::span<const std::uint32_t> stored) {
    PlayingTime time;
    time.frames = stored.size();
    for (const std::uint32_t delay : stored) {
        time.stored += delay;
        time.inBrowsers += delayInBrowsers(delay);
        time.slowedFrames += delayInBrowsers(delay) != delay ? 1 : 0;
    }
    if (time.inBrowsers > 0)
        time.framesPerSecond = 1000.0 * static_cast<double>(stored.size()) / static_cast<double>(time.inBrowsers);
    return time;
}

} // namespace stage
