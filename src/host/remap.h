// From true colour to palette images, and what supercompression does with them. Core: knows no windows.
#pragma once

#include "host/palette.h"
#include "render/image_view.h"

#include <cstdint>
#include <vector>

namespace veldran {

enum class Dithering : std::uint8_t { None, ErrorDiffusion };

// Turns frames of one animation into 8-bit images of one palette. Keeps what it has found for each colour, so one
// remapper serves all frames.
class Remapper {
public:
    // The first `count` entries (1 to 256) of `palette` take part; a reserved slot stands behind them.
    // Throws std::bad_alloc.
    Remapper(const Palette& palette, int count, Dithering dithering);

    // Fills `target` (8 bits) with the entries for `source` (24 or 32 bits, same size). Without dithering each pixel
    // takes the entry of least squared RGB distance, the lowest of equals. With error diffusion the error of each
    // choice goes on to its neighbours (Floyd and Steinberg's weights, every other row from right to left). Throws
    // std::bad_alloc.
    void remap(const ConstImageView& source, const ImageView& target);

private:
    std::uint8_t entryFor(Colour colour);
    void remapNearest(const ConstImageView& source, const ImageView& target);
    void diffuse(const ConstImageView& source, const ImageView& target);

    struct CacheLine {
        Colour colour;
        std::uint8_t entry;
    };

    Palette palette_;
    int count_;
    Dithering dithering_;
    std::vector<CacheLine> cache_;
};

// Writes 1 into `mask` (1 bit, the size of `frame`) where `frame` equals `running` and 0 where it differs or `running`
// has no pixel, and copies what differs into `running`. Both have 24 or both 32 bits; alpha counts as colour.
void updateChangeMask(const ImageView& running, const ConstImageView& frame, const ImageView& mask);

// Sets the pixels of `target` (8 bits) to `slot` where `mask` (1 bit) is 1.
void fillUnchanged(const ImageView& target, const ConstImageView& mask, std::uint8_t slot);

// Sets the pixels of `target` (8 bits) to `slot` where `source` (24 or 32 bits) has exactly `colour`.
void mapColourToSlot(const ImageView& target, const ConstImageView& source, Colour colour, std::uint8_t slot);

} // namespace veldran
