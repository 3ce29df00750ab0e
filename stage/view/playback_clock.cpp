// Deadlines; see the header.
#include "view/playback_clock.h"

#include <algorithm>

namespace stage {
namespace {

constexpr std::int64_t kTicksPerMillisecond = 1000 * 100;
constexpr std::uint32_t kLongestDelay = 24 * 60 * 60 * 1000; // ms; a million of them fit into 64 bits

} // namespace

PlaybackClock::PlaybackClock(std::span<const std::uint32_t> delays, std::uint32_t plays) : plays_(plays) {
    ends_.reserve(delays.size());
    Ticks end = 0;
    for (const std::uint32_t delay : delays)
        ends_.push_back(end += std::clamp(delay, 1U, kLongestDelay) * kTicksPerMillisecond);
}

void PlaybackClock::start(std::size_t frame, Microseconds now) {
    since_ = now;
    before_ = frame == 0 ? 0 : ends_[frame - 1];
}

void PlaybackClock::setSpeed(int percent, Microseconds now) {
    before_ = played(now);
    since_ = now;
    percent_ = percent;
}

PlaybackClock::Ticks PlaybackClock::played(Microseconds now) const {
    return before_ + (now - since_) * percent_;
}

PlaybackClock::Due PlaybackClock::at(Microseconds now) const {
    const Ticks total = ends_.back();
    const Ticks elapsed = std::max(played(now), Ticks{0});
    const Ticks round = elapsed / total;
    if (plays_ != 0 && round >= plays_)
        return {ends_.size() - 1, std::nullopt};
    const auto end = std::ranges::upper_bound(ends_, elapsed % total);
    const Due due{static_cast<std::size_t>(end - ends_.begin()), std::nullopt};
    const Ticks remaining = round * total + *end - before_;
    return {due.frame, since_ + (remaining + percent_ - 1) / percent_};
}

} // namespace stage
