// The preview area: one frame of the chosen instrument, or its animation while it plays.
#pragma once

#include "base/windows/global_block.h"
#include "instruments/windows/effect_registry.h"

#include <memory>
#include <string>

#include <windows.h>

namespace veldran {

class FrameSequence;

class Preview {
public:
    Preview();
    ~Preview();

    // Stops playing and renders the effect's representative frame; without one the area says why.
    void render(HWND dialog, HostParams* host, int effect);

    // Begins to play from the first frame; false when the animation cannot be opened or its first frame not rendered.
    bool play(HWND dialog, HostParams* host, int effect);
    void stop();
    bool isPlaying() const { return sequence_ != nullptr; }
    // Renders the frame that is due now. Returns the milliseconds until the next one, 0 when playing has ended.
    unsigned advance(HWND dialog, HostParams* host);

    // Draws the frame centred in the owner-drawn area, scaled down when it is too large; alpha over a checkerboard.
    void draw(const DRAWITEMSTRUCT& item) const;

    // Frames, size and playing time in one line, or the file that is missing; empty when there is nothing to tell.
    const std::string& summary() const { return summary_; }

private:
    bool showFrame(HWND dialog);
    unsigned delayOf(const HostParams* host, int index) const;
    void explain(const std::string& missing);
    void summarize(HWND dialog, HostParams* host, int effect);

    GlobalBlock image_;
    std::string message_;
    std::string summary_;
    std::unique_ptr<FrameSequence> sequence_;
    int frame_ = 0;
    ULONGLONG due_ = 0; // when the frame shown gives way to the next, in milliseconds of the system's clock
};

} // namespace veldran
