// What all instruments do alike: the loop over the frames, the colour of the empty area, the common controls.
#pragma once

#include "instruments/effect_registry.h"

#include <functional>

namespace veldran {

// What the main dialog's own controls say to an instrument.
std::uint32_t frameDelay(HWND dialog);
bool wantsAlpha(HWND dialog);

// `own`, or the colour behind alpha frames when "Alpha transparency" and "Alpha background" are both checked.
Colour backgroundOr(HWND dialog, Colour own);

struct FrameLoop {
    int frames;
    int progressTotal;
    std::uint32_t delay; // of every frame, in the host's unit
    // Renders frame `index`; an empty block fails the build. With alpha it sets BuildContext::mask, once or for every
    // frame, to a mask of the frame's size.
    std::function<GlobalBlock(int index)> render;
    std::function<int(int index)> progress; // the position that is reported once the frame is done
};

// Renders, merges with the mask when alpha is wanted, appends, reports. 1 when all frames are in the list; 0 as soon as
// one cannot be rendered or appended. Frees the context's mask in any case.
int runFrameLoop(BuildContext& context, const FrameLoop& loop);

} // namespace veldran
