// An image at a reduced size: averages of cells, and what lies between their middles when it is enlarged again. Sides
// shrink by whole numbers of their own, of the parity of their length, so that the grid of cells lies symmetrically
// about the image's middle; what cells cover beyond the borders continues the last pixels.
// Core: knows no windows.
#pragma once

#include "render/box_blur.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

namespace veldran {

inline constexpr int kLargestCell = 5; // more would overflow words of 16 bits

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

// Uninitialised bytes or words, with room behind them for a register.
template <class Value>
std::unique_ptr<Value[]> makeBuffer(int values) {
    return std::make_unique_for_overwrite<Value[]>(static_cast<std::size_t>(values) + kLanes);
}

// The averages of an image's cells, and the image enlarged from them.
class CellGrid {
public:
    // Of 24 or 32 bits. Throws std::bad_alloc.
    CellGrid(const ConstImageView& image, const Cells& across, const Cells& down);

    // The averages: of the image's depth, owned by the grid.
    ImageView cells() const { return cells_; }

    // What the words of enlarged images count in: so many make one unit of a byte, 64 to 128.
    int scale() const { return 4 * across_.size * down_.size * factor(); }

    // Replaces 16 bytes of `image` (as it was given to the constructor) at a time by combine(original, enlarged), the
    // latter in words of 1 / scale(). Exact: nothing is rounded. Throws std::bad_alloc, and then has changed nothing.
    template <class Combine>
    void enlargeInto(const ImageView& image, Combine combine) const {
        const int rowBytes = image.width * channels_;
        const int words = (across_.count + 1) * across_.size * channels_;
        std::unique_ptr<std::uint16_t[]> above = makeBuffer<std::uint16_t>(words);
        std::unique_ptr<std::uint16_t[]> below = makeBuffer<std::uint16_t>(words);
        for (int k = 0; k <= down_.count; ++k) { // the pixels between row of cells k - 1 and row k
            std::swap(above, below);
            if (k < down_.count)
                (this->*loops_.enlarge)(cells_.row(k), below.get());
            const int top = k * down_.size - down_.lead();
            const int from = std::max(top, 0);
            const int to = std::min(top + down_.size, image.height);
            const int weight = down_.firstWeight() + 2 * (from - top);
            const std::uint16_t* const upper = (k == 0 ? below : above).get() + across_.lead() * channels_;
            const std::uint16_t* const lower = (k == down_.count ? above : below).get() + across_.lead() * channels_;
            for (int at = 0; at < rowBytes && from < to; at += kLanes)
                fillColumn(image, from, to, at, rowBytes - at, Slope(upper + at, lower + at, weight, down_.size),
                           combine);
        }
    }

private:
    // Words that move from those of one row of cells to those of the next one.
    struct Slope {
        Words value;
        Words step;
        Slope(const std::uint16_t* upper, const std::uint16_t* lower, int weight, int size)
            : Slope(halves(upper), halves(lower), _mm_set1_epi16(static_cast<short>(weight)),
                    _mm_set1_epi16(static_cast<short>(2 * size - weight))) {}
        Slope(const Words& upper, const Words& lower, __m128i weight, __m128i rest)
            : value{mixed(upper.low, lower.low, weight, rest), mixed(upper.high, lower.high, weight, rest)},
              step{_mm_slli_epi16(_mm_sub_epi16(lower.low, upper.low), 1),
                   _mm_slli_epi16(_mm_sub_epi16(lower.high, upper.high), 1)} {}
        static Words halves(const std::uint16_t* words) {
            const auto* half = reinterpret_cast<const __m128i*>(words);
            return {_mm_loadu_si128(half), _mm_loadu_si128(half + 1)};
        }
        static __m128i mixed(__m128i upper, __m128i lower, __m128i weight, __m128i rest) {
            return _mm_add_epi16(_mm_mullo_epi16(lower, weight), _mm_mullo_epi16(upper, rest));
        }
        void move() { value = {_mm_add_epi16(value.low, step.low), _mm_add_epi16(value.high, step.high)}; }
    };

    // 16 columns of bytes, or the `count` that are left of them, in the rows from `from` to the one before `to`. The
    // combination is copied because it stays in registers then.
    template <class Combine>
    static void fillColumn(const ImageView& image, int from, int to, int at, int count, Slope slope, Combine combine) {
        std::uint8_t* bytes = image.row(from) + at;
        const int part = std::min(count, kLanes);
        const auto fill = [&](auto bytesThere) {
            for (int y = from; y < to; ++y, bytes += image.stride, slope.move())
                storePart(bytes, combine(loadPart(bytes, bytesThere), slope.value), bytesThere);
        };
        if (part == kLanes)
            fill(std::integral_constant<int, kLanes>());
        else
            fill(part);
    }

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
    static constexpr RowLoops loops();
    static RowLoops loopsFor(int channels, int size);

    Cells across_;
    Cells down_;
    int channels_;
    RowLoops loops_;
    std::unique_ptr<std::uint8_t[]> bytes_;
    ImageView cells_;
};

} // namespace veldran
