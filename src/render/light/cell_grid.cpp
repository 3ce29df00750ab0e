// Four words, those of a pixel (and of the next one's blue, where pixels have three channels), are worked on at a time.
// What is written beyond a pixel is overwritten by the next one or lies in the room behind the buffers.
#include "render/light/cell_grid.h"

#include <algorithm>
#include <cstring>
#include <emmintrin.h>
#include <utility>

namespace veldran {
namespace {

// Uninitialised bytes or words, with room behind them for those of a register of bytes.
template <class Value>
std::unique_ptr<Value[]> makeBuffer(int values) {
    return std::make_unique_for_overwrite<Value[]>(static_cast<std::size_t>(values) + kLongestRegister);
}

__m128i loadFour(const std::uint16_t* words) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(words));
}

__m128i loadFour(const std::uint8_t* bytes) {
    int four = 0;
    std::memcpy(&four, bytes, 4);
    return _mm_unpacklo_epi8(_mm_cvtsi32_si128(four), _mm_setzero_si128());
}

// Continues `count` words at both ends of `length` ones by copies of the first and the last `step`.
void continueBothWays(std::uint16_t* words, int length, int step, int count) {
    for (int i = 1; i <= count; ++i)
        words[-i] = words[-i + step];
    for (int i = 0; i < count; ++i)
        words[length + i] = words[length + i - step];
}

} // namespace

Cells::Cells(int length, int cellSize) : pixels(length), size(cellSize), count((length + cellSize - 1) / cellSize) {
    count += (count * size - pixels) % 2;
    outside = (count * size - pixels) / 2;
}

CellGrid::CellGrid(const LightLoops& loops, const ConstImageView& image, const Cells& across, const Cells& down)
    : loops_(loops), across_(across), down_(down), channels_(image.bytesPerPixel()),
      rowLoops_(rowLoopsFor(channels_, across.size)),
      bytes_(makeBuffer<std::uint8_t>(across.count * down.count * channels_)),
      cells_{bytes_.get(), across.count, down.count, static_cast<std::ptrdiff_t>(across.count) * channels_,
             image.bits,   nullptr} {
    const int margin = across.outside * channels_;
    const auto sums = makeBuffer<std::uint16_t>(across.count * across.size * channels_);
    for (int k = 0; k < down.count; ++k) {
        sumRows(image, k * down.size - down.outside, sums.get() + margin);
        continueBothWays(sums.get() + margin, image.width * channels_, channels_, margin);
        (this->*rowLoops_.average)(sums.get(), cells_.row(k));
    }
}

void CellGrid::sumRows(const ConstImageView& image, int y, std::uint16_t* sums) const {
    const std::uint8_t* rows[kLargestCell];
    for (int i = 0; i < down_.size; ++i)
        rows[i] = image.row(std::clamp(y + i, 0, image.height - 1));
    loops_.sumRows(rows, down_.size, image.width * channels_, sums);
}

void CellGrid::enlargeInto(const ImageView& image, const LightUse& use) const {
    const int words = (across_.count + 1) * across_.size * channels_;
    std::unique_ptr<std::uint16_t[]> above = makeBuffer<std::uint16_t>(words);
    std::unique_ptr<std::uint16_t[]> below = makeBuffer<std::uint16_t>(words);
    for (int k = 0; k <= down_.count; ++k) { // the pixels between row of cells k - 1 and row k
        std::swap(above, below);
        if (k < down_.count)
            (this->*rowLoops_.enlarge)(cells_.row(k), below.get());
        const int top = k * down_.size - down_.lead();
        const int from = std::max(top, 0);
        const int to = std::min(top + down_.size, image.height);
        if (from >= to)
            continue;
        loops_.fill({image.row(from), image.stride, image.width * channels_, to - from,
                     (k == 0 ? below : above).get() + across_.lead() * channels_,
                     (k == down_.count ? above : below).get() + across_.lead() * channels_,
                     down_.firstWeight() + 2 * (from - top), down_.size, use});
    }
}

template <int kChannels, int kSize>
void CellGrid::averageRow(const std::uint16_t* sums, std::uint8_t* cells) const {
    const int pixels = kSize * down_.size; // more than 1
    const __m128i half = _mm_set1_epi16(static_cast<short>(pixels / 2));
    const __m128i multiplier = _mm_set1_epi16(static_cast<short>((65536 + pixels / 2) / pixels));
    const std::uint8_t* const end = cells + across_.count * kChannels;
    for (; cells != end; cells += kChannels) {
        __m128i sum = half;
        for (int i = 0; i < kSize; ++i, sums += kChannels)
            sum = _mm_add_epi16(sum, loadFour(sums));
        const __m128i average = _mm_mulhi_epu16(sum, multiplier);
        const int four = _mm_cvtsi128_si32(_mm_packus_epi16(average, average));
        std::memcpy(cells, &four, 4);
    }
}

template <int kChannels, int kSize>
void CellGrid::enlargeRow(const std::uint8_t* cells, std::uint16_t* words) const {
    const int weight = across_.firstWeight();
    const __m128i second = _mm_set1_epi16(static_cast<short>(weight * factor()));
    const __m128i first = _mm_set1_epi16(static_cast<short>((2 * kSize - weight) * factor()));
    const __m128i step = _mm_set1_epi16(static_cast<short>(2 * factor()));
    const std::uint8_t* const last = cells + (across_.count - 1) * kChannels;
    __m128i left = loadFour(cells);
    const auto enlarge = [&](const std::uint8_t* cell) {
        const __m128i right = loadFour(cell);
        const __m128i move = _mm_mullo_epi16(_mm_sub_epi16(right, left), step);
        __m128i value = _mm_add_epi16(_mm_mullo_epi16(left, first), _mm_mullo_epi16(right, second));
        for (int i = 0; i < kSize; ++i, words += kChannels, value = _mm_add_epi16(value, move))
            _mm_storel_epi64(reinterpret_cast<__m128i*>(words), value);
        left = right;
    };
    for (; cells <= last; cells += kChannels)
        enlarge(cells);
    enlarge(last);
}

template <int kChannels, int kSize>
constexpr CellGrid::RowLoops CellGrid::rowLoops() {
    return {&CellGrid::averageRow<kChannels, kSize>, &CellGrid::enlargeRow<kChannels, kSize>};
}

CellGrid::RowLoops CellGrid::rowLoopsFor(int channels, int size) {
    static constexpr RowLoops kLoops[2][kLargestCell] = {
        {rowLoops<3, 1>(), rowLoops<3, 2>(), rowLoops<3, 3>(), rowLoops<3, 4>(), rowLoops<3, 5>()},
        {rowLoops<4, 1>(), rowLoops<4, 2>(), rowLoops<4, 3>(), rowLoops<4, 4>(), rowLoops<4, 5>()}};
    return kLoops[channels - 3][size - 1];
}

} // namespace veldran
