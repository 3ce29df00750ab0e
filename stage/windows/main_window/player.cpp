// Timers of a timer queue ring in menus and dialogs, too, and as exactly as the system's clock ticks; see the header.
#include "windows/main_window/player.h"

#include <timeapi.h>

#include <algorithm>
#include <chrono>

namespace stage {
namespace {

constexpr UINT kClockPeriod = 1; // ms, while something is played

PlaybackClock::Microseconds now() {
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

Player::Player(HWND window, UINT message) : window_(window), message_(message) {}

Player::~Player() {
    stop();
}

void Player::load(std::span<const std::uint32_t> delays, std::uint32_t plays) {
    stop();
    clock_.reset();
    if (delays.empty())
        return;
    clock_ = std::make_unique<PlaybackClock>(delays, plays);
    clock_->setSpeed(percent_, 0);
}

void Player::start(std::size_t frame) {
    if (!clock_)
        return;
    clock_->start(frame, now());
    if (!isPlaying_)
        timeBeginPeriod(kClockPeriod);
    isPlaying_ = true;
    due();
}

void Player::stop() {
    cancelWake();
    if (isPlaying_)
        timeEndPeriod(kClockPeriod);
    isPlaying_ = false;
}

void Player::setSpeed(int percent) {
    percent_ = percent;
    if (clock_)
        clock_->setSpeed(percent, now());
    if (isPlaying_)
        due();
}

std::size_t Player::due() {
    const PlaybackClock::Microseconds moment = now();
    const PlaybackClock::Due due = clock_->at(moment);
    if (due.until)
        wakeIn(*due.until - moment);
    else
        stop();
    return due.frame;
}

void Player::wakeIn(PlaybackClock::Microseconds time) {
    cancelWake();
    const DWORD milliseconds =
        static_cast<DWORD>(std::clamp<PlaybackClock::Microseconds>((time + 999) / 1000, 1, 60000));
    if (!CreateTimerQueueTimer(&timer_, nullptr, ring, this, milliseconds, 0,
                               WT_EXECUTEINTIMERTHREAD | WT_EXECUTEONLYONCE))
        timer_ = nullptr;
}

// On a thread of the system's: reads what never changes.
void CALLBACK Player::ring(void* player, BOOLEAN) {
    const auto* self = static_cast<const Player*>(player);
    PostMessageW(self->window_, self->message_, 0, 0);
}

void Player::cancelWake() {
    if (timer_ != nullptr)
        DeleteTimerQueueTimer(nullptr, timer_, INVALID_HANDLE_VALUE); // waits for one that is just ringing
    timer_ = nullptr;
}

} // namespace stage
