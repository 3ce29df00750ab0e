// From true colour to palette images, and what supercompression does with them. Core: knows no windows.
#pragma once

#include "colour/nearest_colours.h"
#include "colour/palette.h"
#include "render/image_view.h"

#include <array>
#include <cstdint>
#include <span>

#include <emmintrin.h>

namespace veldran {

enum class Dithering : std::uint8_t { None, ErrorDiffusion };

// A frame and the palette image that it becomes: 24 or 32 bits and 8 bits, of the same size.
struct RemapPair {
    ConstImageView source;
    ImageView target;
};

// Turns frames of one animation into 8-bit images of one palette. Keeps what it has found for each colour, so one
// remapper serves all frames.
class Remapper {
public:
    // So many frames are diffused at a time: while one waits for its palette entry the others compute.
    static constexpr std::size_t kSideBySide = 8;

    // The first `count` entries (1 to 256) of `palette` take part; a reserved slot stands behind them. Pixels of the
    // colour `apart`, which the caller maps himself, neither take errors nor pass them on. Throws std::bad_alloc.
    Remapper(const Palette& palette, int count, Dithering dithering, Colour apart = kNoColour);

    // Fills the targets with the entries for their sources. Without dithering each pixel takes the entry of least
    // squared RGB distance, the lowest of equals. With error diffusion the error of each choice goes on to its
    // neighbours (Floyd and Steinberg's weights, every other row from right to left), but flat areas of a palette
    // colour stay flat, and a pixel whose source is the same as in the frame before keeps its entry.
    //
    // The frames follow each other; `before`, when given, is the one before the first, as an earlier call left it. Only
    // frames of the same size and depth are compared. Throws std::bad_alloc.
    void remap(std::span<const RemapPair> frames, const RemapPair* before = nullptr);

private:
    struct LaneRow;
    struct ShownPixel;

    void remapNearest(const RemapPair& frame, const RemapPair* before);
    std::size_t diffuseFirst(std::span<const RemapPair> frames, const RemapPair* before);
    template <std::size_t Lanes>
    void diffuse(const RemapPair* frames, const RemapPair* before);
    __m128i choose(std::span<LaneRow> rows, int x, int bytes, __m128i due, ShownPixel& shown);
    bool isFlat(LaneRow& row, std::uint32_t pixel);
    std::uint8_t entryFor(std::uint32_t pixel) {
        return nearest_.entryFor(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
    }

    NearestColours nearest_;
    Dithering dithering_;
    // As pixels: blue, green, red from the lowest byte on.
    std::uint32_t apart_;
    std::array<std::uint32_t, kMostEntries> entries_;
};

// Writes 1 into `mask` (1 bit, the size of `frame`) where `frame` equals `running` and 0 where it differs or `running`
// has no pixel, and copies what differs into `running`. Both have 24 or both 32 bits; alpha counts as colour.
void updateChangeMask(const ImageView& running, const ConstImageView& frame, const ImageView& mask);

// Sets the pixels of `target` (8 bits) to `slot` where `mask` (1 bit) is 1.
void fillUnchanged(const ImageView& target, const ConstImageView& mask, std::uint8_t slot);

// Sets the pixels of `target` (8 bits) to `slot` where `source` (24 or 32 bits) has exactly `colour`.
void mapColourToSlot(const ImageView& target, const ConstImageView& source, Colour colour, std::uint8_t slot);

} // namespace veldran
