// What all instruments do alike: opening, the loop over the frames, the alpha mask, the common controls.
#pragma once

#include "base/windows/global_block.h"
#include "instruments/windows/effect_registry.h"

namespace veldran {

// `own`, or the colour behind alpha frames when "Alpha transparency" and "Alpha background" are both checked.
Colour backgroundOr(HWND dialog, Colour own);

// The host's delay unit as flags of HostParams; 0 without a host.
std::uint32_t delayUnitOf(const HostParams* host);

// The frames of one animation with the parameters as they were when it was opened. Holds what all frames share. Images
// that it gives out are the caller's; an empty one means failure. Its functions may throw std::bad_alloc.
class FrameSequence {
public:
    FrameSequence(const FrameSequence&) = delete;
    FrameSequence& operator=(const FrameSequence&) = delete;
    virtual ~FrameSequence() = default;

    // 0 when a file could not be read that all frames but the representative one need.
    virtual int frames() const = 0;
    // How long frame `index` is shown, in the host's unit: what "Delay:" says.
    virtual std::uint32_t delay(int) const { return delay_; }

    // Frame `index`, 0 to frames() - 1, without alpha.
    virtual GlobalBlock render(int index) = 0;
    // The representative frame.
    virtual GlobalBlock renderStill() = 0;
    // The alpha of all frames, in their size: white is opaque.
    virtual GlobalBlock renderMask() = 0;

    // What is reported to the host once a frame is done.
    virtual int progress(int index) const { return index; }
    virtual int progressTotal() const { return frames(); }

    // The artwork in use, if there is one, for BuildContext.
    virtual const void* artwork() const { return nullptr; }

    // Whether a frame that cannot be merged with the mask is none; else it is delivered without alpha.
    virtual bool insistsOnAlpha() const { return false; }

    // Frame `index` as the host receives it: merged with the mask when alpha is wanted.
    GlobalBlock renderFinished(int index);

protected:
    // Reads the common controls.
    explicit FrameSequence(HWND dialog);

private:
    std::uint32_t delay_;
    bool alpha_;
    GlobalBlock mask_; // once it was needed
};

// Opens the animation with what the dialog's controls say; null when artwork or a file is missing. `host` tells the
// unit of delays and may be null. May throw std::bad_alloc.
using OpenSequence = std::unique_ptr<FrameSequence> (*)(HWND dialog, HostParams* host);

// The same for those who want the frames: null as well when there are none.
std::unique_ptr<FrameSequence> openFrames(OpenSequence open, HWND dialog, HostParams* host);

// The bodies of the entries: 1 when the still picture stands in the context, or all frames in its list.
int runPreview(BuildContext& context, OpenSequence open);
int runBuild(BuildContext& context, OpenSequence open);

template <OpenSequence kOpen>
int previewEntry(BuildContext* context) {
    return runPreview(*context, kOpen);
}

template <OpenSequence kOpen>
int buildEntry(BuildContext* context) {
    return runBuild(*context, kOpen);
}

} // namespace veldran
