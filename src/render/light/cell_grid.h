// An image at a reduced size: averages of cells, and what lies between their middles when it is enlarged again. Sides
// shrink by whole numbers of their own, of the parity of their length, so that the grid of cells lies symmetrically
// about the image's middle; what cells cover beyond the borders continues the last pixels.
// Core: knows no windows.
#pragma once

#include "render/image_view.h"
#include "render/light/light_loops.h"

#include <cstdint>
#include <memory>

namespace veldran {

// The cells of one direction.
struct Cells {
    int pixels;  // length of the image
    int size;    // pixels of a cell, 1 to kLargestCell; if even, `pixels` is even too
    int count;   // cells that cover the length
    int outside; // pixels by which the first cell begins before the image, and the last one ends behind it

    Cells(int length, int cellSize);

    // Between the middles of two cells stand `size` pixels, the first of them at or behind the first middle. The
    // k-th pixel's weight for the second cell is firstWeight + 2 k of 2 x size.
    int firstWeight() const { return 1 - size % 2; }
    // Pixels from the first of those between a cell before the first one and that one to the image.
    int lead() const { return outside + (size + 1) / 2; }
};

// The averages of an image's cells, and the image enlarged from them.
class CellGrid {
public:
    // Of 24 or 32 bits. `loops` outlive the grid. Throws std::bad_alloc.
    CellGrid(const LightLoops& loops, const ConstImageView& image, const Cells& across, const Cells& down);

    // The averages: of the image's depth, owned by the grid.
    ImageView cells() const { return cells_; }

    // What the words of enlarged images count in: so many make one unit of a byte, 64 to 128.
    int scale() const { return 4 * across_.size * down_.size * factor(); }

    // Enlarges the cells over `image` (as it was given to the constructor), where `use`, of this scale, says what
    // becomes of them. Exact: nothing is rounded before. Throws std::bad_alloc, and then has changed nothing.
    void enlargeInto(const ImageView& image, const LightUse& use) const;

private:
    // Whole multiples that take words as near to 128 as they can come.
    int factor() const { return 128 / (4 * across_.size * down_.size); }
    // Adds up `down_.size` rows of the image from `y` on; `sums` stands where the image's first pixel does.
    void sumRows(const ConstImageView& image, int y, std::uint16_t* sums) const;
    // The averages of a row of cells from its sums, which begin at the first cell.
    template <int kChannels, int kSize>
    void averageRow(const std::uint16_t* sums, std::uint8_t* cells) const;
    // A row of cells enlarged horizontally: (count + 1) x size pixels, a word a channel.
    template <int kChannels, int kSize>
    void enlargeRow(const std::uint8_t* cells, std::uint16_t* words) const;

    // Loops whose lengths the compiler knows.
    struct RowLoops {
        void (CellGrid::*average)(const std::uint16_t*, std::uint8_t*) const;
        void (CellGrid::*enlarge)(const std::uint8_t*, std::uint16_t*) const;
    };
    template <int kChannels, int kSize>
    static constexpr RowLoops rowLoops();
    static RowLoops rowLoopsFor(int channels, int size);

    const LightLoops& loops_;
    Cells across_;
    Cells down_;
    int channels_;
    RowLoops rowLoops_;
    std::unique_ptr<std::uint8_t[]> bytes_;
    ImageView cells_;
};

} // namespace veldran
