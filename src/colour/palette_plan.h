// Which palette an animation gets, and which of its slots stays free for "as before" or "nothing here".
#pragma once

#include "colour/palette.h"
#include "colour/remap.h"

#include <optional>
#include <span>

namespace veldran {

struct PalettePlan {
    Palette palette{};
    int colours = 0;       // entries that frames may use
    int depth = 0;         // bits per pixel that the host is told
    int slot = -1;         // the reserved slot, or -1
    bool adaptive = false; // made for the frames; then the reserved slot holds the background colour
};

// What reserving a slot depends on.
struct SlotWish {
    bool supercompress;
    bool background;  // background pixels are to be mapped
    bool transparent; // and are to be transparent
    Colour colour;    // the background, or kNoColour
};

// The colour whose pixels a remapper leaves apart, because all of them go to the reserved slot; kNoColour without one.
// Supercompressed frames show the background in its own colour wherever it appears later on.
Colour colourApart(const SlotWish& wish);

PalettePlan planFixedPalette(int choice);

// The best palette for the frames; with a wish the last slot is left for the background colour, which then takes no
// part unless frames are supercompressed. A palette for dithering reaches further out. Nothing when both methods run
// out of memory.
std::optional<PalettePlan> planAdaptivePalette(std::span<const ConstImageView> frames, const SlotWish& wish,
                                               Dithering dithering);

// The slot of a fixed palette that can be reserved without changing it: the first that the palette leaves free below
// 2^depth, else one that no remapped frame uses; -1 when there is none or the wish asks for none. Masking the
// background without making it transparent reserves nothing in a fixed palette. Throws std::bad_alloc.
int findFreeSlot(const PalettePlan& plan, std::span<const ConstImageView> frames, const SlotWish& wish,
                 Dithering dithering);

// The palette index that stands for the background: the reserved slot of an adaptive palette, else the nearest entry.
int backgroundEntry(const PalettePlan& plan, Colour background);

} // namespace veldran
