// Which frame is due at a moment of time. Deadlines are counted from the start, never from frame to frame: a late frame
// makes the next ones no later, and frames whose time is over are left out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace stage {

class PlaybackClock {
public:
    // Moments and times are microseconds of any clock that never jumps.
    using Microseconds = std::int64_t;

    // At least one delay, in milliseconds; 0 is played as 1, and more than a day as a day. `plays` 0: forever.
    PlaybackClock(std::span<const std::uint32_t> delays, std::uint32_t plays);

    // The frame begins now, in the first of the plays.
    void start(std::size_t frame, Microseconds now);
    // In per cent, 1 to 10000. The place within the frame stays.
    void setSpeed(int percent, Microseconds now);

    struct Due {
        std::size_t frame = 0;
        std::optional<Microseconds> until; // when the next one is due; nothing: it is the last and stays
    };
    Due at(Microseconds now) const;

private:
    using Ticks = std::int64_t; // 1/100 us of playing time, so that every speed is exact

    Ticks played(Microseconds now) const;

    std::vector<Ticks> ends_; // of each frame, from the beginning of the animation
    std::uint32_t plays_;
    int percent_ = 100;
    Microseconds since_ = 0; // when `before_` had been played
    Ticks before_ = 0;
};

} // namespace stage
