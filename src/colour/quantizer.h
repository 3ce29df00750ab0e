// Palettes made for an animation: the colours that represent all its frames best. Core: knows no windows, asks nothing
// at random; the same frames in any order give the same palette.
#pragma once

#include "colour/palette.h"
#include "render/image_view.h"

#include <optional>
#include <span>

namespace veldran {

struct QuantizeRequest {
    std::span<const ConstImageView> frames; // 24 or 32 bits, of any sizes
    int colours;                            // at most so many entries are made: 1 to 256
    std::optional<Colour> excluded;         // pixels of this colour take no part
    bool forDithering = false;              // entries reach further out, so that mixtures can reach every colour
};

// Both fill the first entries of `palette` and return how many: 0 when no pixel takes part, nothing when memory runs
// out.
//
// The first method counts every colour, cuts the colours by variance and refines the cut by k-means. Exact when the
// frames hold no more colours than asked for. It needs up to 40 MB.
std::optional<int> optimalPalette(const QuantizeRequest& request, Palette& palette);

// The second method needs about three megabytes whatever the frames hold: it cuts a table of colours of five bits a
// channel by variance and leaves it at that.
std::optional<int> optimalPaletteInSmallMemory(const QuantizeRequest& request, Palette& palette);

} // namespace veldran
