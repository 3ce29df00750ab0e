// The stages that work on the whole frame list: change masks, remapping, sizes. They lock each frame, let the core work
// on its pixels, and report progress to the host. False means that memory was exhausted or a frame could not be locked;
// the list is then still whole and the caller frees it.
#pragma once

#include "abi/plugin_abi.h"
#include "colour/palette_plan.h"
#include "render/windows/frame_image.h"
#include "render/windows/frame_list.h"

#include <optional>
#include <vector>

namespace veldran {

// All images of a list, locked for as long as the object lives.
class LockedFrames {
public:
    explicit LockedFrames(const FrameList& list);
    // Whether every image could be locked and has 24 or 32 bits.
    explicit operator bool() const { return complete_; }
    const std::vector<ConstImageView>& views() const { return views_; }

private:
    std::vector<LockedImage> images_;
    std::vector<ConstImageView> views_;
    bool complete_ = true;
};

// Gives every frame but the first a change mask against what the frames before it show, and keeps `transparentColour`
// in its record.
bool makeChangeMasks(FrameList& list, Colour transparentColour, const HostParams* host);

// Replaces every image by one of 8 bits in the plan's palette. Where a slot is reserved it receives what the wish asks
// for: unchanged pixels (and the first frame's background) when supercompressed, else the background of every frame.
// Sets each record's transparent index.
bool remapFrames(FrameList& list, const PalettePlan& plan, const SlotWish& wish, Dithering dithering,
                 const HostParams* host);

struct FrameSize {
    int width;
    int height;
};

// The largest width and the largest height of all frames; nothing when one cannot be locked.
std::optional<FrameSize> largestFrame(const FrameList& list);

} // namespace veldran
