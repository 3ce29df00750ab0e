// What all instruments do alike: the loop over the frames, the colour of the empty area, the common controls.
#pragma once

#include "base/global_block.h"
#include "instruments/effect_registry.h"

#include <new>

namespace veldran {

// What the main dialog's own controls say to an instrument.
std::uint32_t frameDelay(HWND dialog);
bool wantsAlpha(HWND dialog);

// `own`, or the colour behind alpha frames when "Alpha transparency" and "Alpha background" are both checked.
Colour backgroundOr(HWND dialog, Colour own);

// The frames of one animation with the parameters as they were when it was opened. Holds what all frames share.
class FrameSequence {
public:
    FrameSequence() = default;
    FrameSequence(const FrameSequence&) = delete;
    FrameSequence& operator=(const FrameSequence&) = delete;
    virtual ~FrameSequence() = default;

    virtual int frames() const = 0;
    virtual std::uint32_t delay(int index) const = 0; // in the host's unit

    // Renders frame `index`, 0 to frames() - 1; empty on failure. With alpha it leaves a mask of the frame's size in
    // BuildContext::mask, once or for every frame.
    virtual GlobalBlock render(BuildContext& context, int index) = 0;

    // What is reported to the host once a frame is done.
    virtual int progress(int index) const { return index; }
    virtual int progressTotal() const { return frames(); }
};

// Frame `index` as the host receives it: rendered, and merged with its mask when alpha is wanted. Empty on failure.
GlobalBlock renderWithAlpha(BuildContext& context, FrameSequence& sequence, int index);

// Runs the body of an entry: 0 when memory runs out in it.
template <class Body>
int runEntry(Body body) {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

// Renders, appends and reports all frames. 1 when they are in the list; 0 when `sequence` is null or as soon as a frame
// cannot be rendered or appended. Frees the context's mask in any case.
int buildSequence(BuildContext& context, FrameSequence* sequence);

} // namespace veldran
