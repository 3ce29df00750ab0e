// Plays one sound at a time through the default output device. The window that is notified owns the order of calls:
// nothing here waits or runs in a thread of its own.
#pragma once

#include "base/windows/global_block.h"
#include "sound/windows/wave_file.h"

#include <windows.h>

#include <mmsystem.h>

namespace veldran {

inline void closeWaveOut(HWAVEOUT device) {
    waveOutClose(device);
}
using WaveOutput = Owner<HWAVEOUT, closeWaveOut>;

class WavePlayer {
public:
    WavePlayer() = default;
    WavePlayer(const WavePlayer&) = delete;
    WavePlayer& operator=(const WavePlayer&) = delete;
    ~WavePlayer() { stop(); }

    // Takes `sound` and plays it from its start; what played before stops. `window` receives MM_WOM_DONE at the end.
    // False when there is no device, it does not take the format, or memory is short; the player is idle then.
    bool play(HWND window, WaveSound sound);

    // Silences the device and gives everything back; does nothing on an idle player.
    void stop();

    bool isPlaying() const { return static_cast<bool>(device_); }

    // Whether MM_WOM_DONE for `device` tells of the end of what plays. Stopping a sound sends the message too, and a
    // device that is opened next may get the same handle: so the header has to say that it is done.
    bool isDone(HWAVEOUT device) const;

    // Plays the sound, which is done, once more on the same device; false when that fails or there is nothing in it.
    bool repeat();

private:
    bool start(HWND window);
    WAVEHDR* header() const { return reinterpret_cast<WAVEHDR*>(lockedHeader_.data()); }

    WaveSound sound_;
    GlobalBlock headerBlock_;
    LockedBlock lockedSound_;
    LockedBlock lockedHeader_;
    WaveOutput device_;
};

} // namespace veldran
