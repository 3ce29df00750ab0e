// Adaptive palettes give up their last entry for the reserved slot; fixed ones keep all their bytes.
#include "host/palette_plan.h"

#include "host/quantizer.h"

#include <algorithm>
#include <array>
#include <vector>

namespace veldran {
namespace {

constexpr int kMostColours = 256;

std::array<bool, 256> usedEntries(const PalettePlan& plan, std::span<const ConstImageView> frames,
                                  Dithering dithering) {
    std::array<bool, 256> used{};
    Remapper remapper(plan.palette, plan.colours, dithering);
    std::vector<std::uint8_t> pixels;
    for (const ConstImageView& frame : frames) {
        pixels.resize(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height));
        remapper.remap(frame, ImageView{pixels.data(), frame.width, frame.height, frame.width, 8, nullptr});
        for (const std::uint8_t entry : pixels)
            used[entry] = true;
    }
    return used;
}

} // namespace

PalettePlan planFixedPalette(int choice) {
    PalettePlan plan;
    plan.colours = fixedPalette(&plan.palette, &plan.depth, choice);
    return plan;
}

std::optional<PalettePlan> planAdaptivePalette(std::span<const ConstImageView> frames, const SlotWish& wish) {
    const bool reserve = wish.supercompress || wish.background;
    PalettePlan plan;
    plan.adaptive = true;
    const int colourCount = reserve ? kMostColours - 1 : kMostColours;
    // Supercompressed frames show the background in its own colour wherever it appears later on.
    const bool exclude = wish.background && !wish.supercompress;
    const QuantizeRequest request{frames, colourCount, exclude ? std::optional(wish.colour) : std::nullopt};
    std::optional<int> colours = optimalPalette(request, plan.palette);
    if (!colours)
        colours = optimalPaletteInSmallMemory(request, plan.palette);
    if (!colours)
        return std::nullopt;
    plan.colours = std::max(*colours, 1); // frames of nothing but background use no entry; black is there for them
    plan.depth = depthForColours(colourCount + (reserve ? 1 : 0));
    if (reserve) {
        plan.slot = colourCount;
        plan.palette[static_cast<std::size_t>(colourCount)] = paletteEntry(wish.colour);
    }
    return plan;
}

int findFreeSlot(const PalettePlan& plan, std::span<const ConstImageView> frames, const SlotWish& wish,
                 Dithering dithering) {
    if (!wish.supercompress && !(wish.background && wish.transparent))
        return -1;
    const int entries = 1 << plan.depth;
    if (plan.colours < entries)
        return plan.colours;
    const std::array<bool, 256> used = usedEntries(plan, frames, dithering);
    for (int slot = 0; slot < entries; ++slot)
        if (!used[static_cast<std::size_t>(slot)])
            return slot;
    return -1;
}

int backgroundEntry(const PalettePlan& plan, Colour background) {
    if (plan.adaptive && plan.slot >= 0)
        return plan.slot;
    return nearestEntry(plan.palette, plan.colours, background);
}

} // namespace veldran
