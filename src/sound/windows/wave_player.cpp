// A header that the device holds must be taken back before the device is closed and the memory freed.
#include "sound/windows/wave_player.h"

namespace veldran {
namespace {

// Drivers divide by these.
bool isPlayable(const WaveFormat& format) {
    return format.channels != 0 && format.samplesPerSecond != 0 && format.blockAlignment != 0;
}

} // namespace

bool WavePlayer::play(HWND window, WaveSound sound) {
    stop();
    sound_ = std::move(sound);
    lockedSound_ = LockedBlock(sound_.block.get());
    headerBlock_ = allocateGlobal(sizeof(WAVEHDR));
    lockedHeader_ = LockedBlock(headerBlock_.get());
    if (lockedSound_ && lockedHeader_ && start(window))
        return true;
    stop();
    return false;
}

bool WavePlayer::start(HWND window) {
    if (!isPlayable(*reinterpret_cast<const WaveFormat*>(lockedSound_.data())))
        return false;
    // A PCM format needs no more than the record's sixteen bytes.
    const auto* format = reinterpret_cast<const WAVEFORMATEX*>(lockedSound_.data());
    HWAVEOUT device = nullptr;
    if (waveOutOpen(&device, WAVE_MAPPER, format, reinterpret_cast<DWORD_PTR>(window), 0, CALLBACK_WINDOW) !=
        MMSYSERR_NOERROR)
        return false;
    device_.reset(device);
    header()->lpData = reinterpret_cast<LPSTR>(lockedSound_.data() + sizeof(WaveFormat));
    header()->dwBufferLength = sound_.dataBytes;
    return waveOutPrepareHeader(device, header(), sizeof(WAVEHDR)) == MMSYSERR_NOERROR &&
           waveOutWrite(device, header(), sizeof(WAVEHDR)) == MMSYSERR_NOERROR;
}

void WavePlayer::stop() {
    if (device_) {
        waveOutReset(device_.get());
        if ((header()->dwFlags & WHDR_PREPARED) != 0)
            waveOutUnprepareHeader(device_.get(), header(), sizeof(WAVEHDR));
        device_.reset();
    }
    lockedHeader_ = LockedBlock();
    headerBlock_.reset();
    lockedSound_ = LockedBlock();
    sound_ = WaveSound();
}

bool WavePlayer::isDone(HWAVEOUT device) const {
    return device_ && device_.get() == device && (header()->dwFlags & WHDR_DONE) != 0;
}

bool WavePlayer::repeat() {
    return header()->dwBufferLength != 0 && waveOutWrite(device_.get(), header(), sizeof(WAVEHDR)) == MMSYSERR_NOERROR;
}

} // namespace veldran
