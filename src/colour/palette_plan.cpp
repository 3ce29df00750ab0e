// Adaptive palettes give up their last entry for the reserved slot; fixed ones keep all their bytes.
#include "colour/palette_plan.h"

#include "colour/quantizer.h"

#include <algorithm>
#include <array>
#include <vector>

namespace veldran {
namespace {

constexpr int kMostColours = 256;

// Remaps all frames, as many at a time as the remapper likes, and notes what they show.
std::array<bool, 256> usedEntries(const PalettePlan& plan, std::span<const ConstImageView> frames, const SlotWish& wish,
                                  Dithering dithering) {
    std::array<bool, 256> used{};
    Remapper remapper(plan.palette, plan.colours, dithering, colourApart(wish));
    std::array<std::vector<std::uint8_t>, Remapper::kSideBySide + 1> pixels; // the last one holds the frame before
    std::vector<RemapPair> pairs;
    RemapPair before{};
    for (std::size_t first = 0; first < frames.size(); first += pairs.size()) {
        pairs.clear();
        for (std::size_t i = first; i < frames.size() && pairs.size() < Remapper::kSideBySide; ++i) {
            const ConstImageView& frame = frames[i];
            std::vector<std::uint8_t>& target = pixels[pairs.size()];
            target.resize(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height));
            pairs.push_back({frame, {target.data(), frame.width, frame.height, frame.width, 8, nullptr}});
        }
        remapper.remap(pairs, first == 0 ? nullptr : &before);
        for (std::size_t i = 0; i < pairs.size(); ++i)
            for (const std::uint8_t entry : pixels[i])
                used[entry] = true;
        std::swap(pixels[pairs.size() - 1], pixels.back());
        before = pairs.back();
    }
    return used;
}

} // namespace

Colour colourApart(const SlotWish& wish) {
    return wish.background && !wish.supercompress ? wish.colour : kNoColour;
}

PalettePlan planFixedPalette(int choice) {
    PalettePlan plan;
    plan.colours = fixedPalette(&plan.palette, &plan.depth, choice);
    return plan;
}

std::optional<PalettePlan> planAdaptivePalette(std::span<const ConstImageView> frames, const SlotWish& wish,
                                               Dithering dithering) {
    const bool reserve = wish.supercompress || wish.background;
    PalettePlan plan;
    plan.adaptive = true;
    const int colourCount = reserve ? kMostColours - 1 : kMostColours;
    const Colour apart = colourApart(wish);
    const QuantizeRequest request{frames, colourCount, apart != kNoColour ? std::optional(apart) : std::nullopt,
                                  dithering == Dithering::ErrorDiffusion};
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
    const std::array<bool, 256> used = usedEntries(plan, frames, wish, dithering);
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
