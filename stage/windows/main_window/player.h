// Plays an animation: tells which frame is due, and wakes the window when the next one is. Only the clock decides; a
// window that is kept busy leaves frames out and is on time again afterwards.
#pragma once

#include "view/playback_clock.h"
#include "windows/system/handles.h"

#include <memory>

namespace stage {

class Player {
public:
    // `message` is posted to the window each time that it should ask for the frame.
    Player(HWND window, UINT message);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    // What is played from the next start on; stops. Without delays there is nothing to play.
    void load(std::span<const std::uint32_t> delays, std::uint32_t plays);
    bool isPlaying() const { return isPlaying_; }
    void start(std::size_t frame);
    void stop();
    int speed() const { return percent_; }
    void setSpeed(int percent);

    // The frame that is due now. Arranges for the next message, or stops when the last frame has been reached.
    std::size_t due();

private:
    void wakeIn(PlaybackClock::Microseconds time);
    void cancelWake();

    static void CALLBACK ring(void* player, BOOLEAN);

    HWND window_;
    UINT message_;
    std::unique_ptr<PlaybackClock> clock_;
    bool isPlaying_ = false;
    int percent_ = 100;
    HANDLE timer_ = nullptr;
};

} // namespace stage
