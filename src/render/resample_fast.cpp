// Rows are summed first, 16 bytes at a time, then the columns of that one row of sums: a reduction reads the source
// once and does little else. SSE2 alone, which every 64-bit processor of this family has.
#include "render/resample_fast.h"

#include "render/area_coverage.h"

#include <bit>
#include <cstring>
#include <emmintrin.h>
#include <limits>
#include <vector>

namespace veldran {
namespace {

constexpr int kBlock = 16;        // bytes of a register
constexpr std::size_t kSlack = 8; // sums that a load of the last pixel reads beyond it

__m128i loadBlock(const void* bytes) {
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

void storeBlock(void* bytes, __m128i block) {
    _mm_storeu_si128(static_cast<__m128i*>(bytes), block);
}

int rowBytes(const ConstImageView& image) {
    return image.width * image.bytesPerPixel();
}

bool canSumBlocks(const ConstImageView& source, const ImageView& target) {
    return source.bits == target.bits && source.bits >= 24 && rowBytes(source) >= kBlock;
}

// Calls sumBlock(offset) for blocks that cover a row; the last one overlaps the one before it.
template <class SumBlock>
void forEachBlock(int bytes, SumBlock sumBlock) {
    for (int at = 0; at < bytes - kBlock; at += kBlock)
        sumBlock(at);
    sumBlock(bytes - kBlock);
}

// Writes the channels of one pixel from the low bytes of `pixel`. But for the last of a row, a pixel of three bytes may
// spill into the next one, which is written after it.
template <int Channels>
void storePixel(std::uint8_t* out, __m128i pixel, bool last) {
    const int bytes = _mm_cvtsi128_si32(pixel);
    if (Channels == 3 && last)
        std::memcpy(out, &bytes, 3);
    else
        std::memcpy(out, &bytes, 4);
}

// ---- Whole ratios

// The quotient by the `area` of a target pixel, 2 to 128, of sums of bytes: n / area = n x multiplier >> 16 + shift.
// With 2^shift < area <= 2^(shift + 1) the multiplier, 2^(16 + shift) / area rounded up, fits 16 bits, and it is too
// large by e / area with e < area. The quotient is exact where n x e < 2^(16 + shift); n is below 256 x area, so that
// holds up to 256 x area^2 = 2^15 x area, which is area = 128.
constexpr int kLargestShortArea = 128;
struct ShortReciprocal {
    __m128i multiplier;
    __m128i shift;
    __m128i half;

    explicit ShortReciprocal(int area) {
        const int bits = static_cast<int>(std::bit_width(static_cast<unsigned>(area - 1))) - 1;
        multiplier = _mm_set1_epi16(static_cast<short>(((1 << (16 + bits)) + area - 1) / area));
        shift = _mm_cvtsi32_si128(bits);
        half = _mm_set1_epi16(static_cast<short>(area / 2));
    }
    // Rounds halves up.
    __m128i divide(__m128i sums) const {
        return _mm_srl_epi16(_mm_mulhi_epu16(_mm_add_epi16(sums, half), multiplier), shift);
    }
};

// How many source pixels lie under a target pixel, one way. 0 as `Ratio` below means: as large as the argument says.
template <int Ratio>
void addRows(const std::uint8_t* top, std::ptrdiff_t stride, int ratio, int bytes, std::uint16_t* sums) {
    const int rows = Ratio != 0 ? Ratio : ratio;
    const __m128i zero = _mm_setzero_si128();
    forEachBlock(bytes, [=](int at) {
        __m128i low = zero;
        __m128i high = zero;
        const std::uint8_t* row = top + at;
        for (int y = 0; y < rows; ++y, row += stride) {
            const __m128i block = loadBlock(row);
            low = _mm_add_epi16(low, _mm_unpacklo_epi8(block, zero));
            high = _mm_add_epi16(high, _mm_unpackhi_epi8(block, zero));
        }
        storeBlock(sums + at, low);
        storeBlock(sums + at + 8, high);
    });
}

// Averages the sums of a row of target pixels, two of them at a time in the halves of a register.
template <int Ratio, int Channels>
void averageColumns(const std::uint16_t* sums, int ratio, const ShortReciprocal& area, std::uint8_t* out, int width) {
    const int columns = Ratio != 0 ? Ratio : ratio;
    const std::ptrdiff_t step = static_cast<std::ptrdiff_t>(columns) * Channels;
    const auto half = [](const std::uint16_t* four) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(four)); };
    const auto average = [&](const std::uint16_t* left, const std::uint16_t* right) {
        __m128i total = _mm_setzero_si128();
        for (int x = 0; x < columns; ++x)
            total = _mm_add_epi16(total, _mm_unpacklo_epi64(half(left + x * Channels), half(right + x * Channels)));
        const __m128i quotients = area.divide(total);
        return _mm_packus_epi16(quotients, quotients);
    };
    int x = 0;
    for (; x < width - 2; x += 2, sums += 2 * step, out += 2 * Channels) {
        const __m128i pair = average(sums, sums + step);
        storePixel<Channels>(out, pair, false);
        storePixel<Channels>(out + Channels, _mm_srli_epi64(pair, 32), false);
    }
    for (; x < width; ++x, sums += step, out += Channels)
        storePixel<Channels>(out, average(sums, sums), x == width - 1);
}

template <int Ratio, int Channels>
void averageWholeRatio(const ConstImageView& source, const ImageView& target) {
    const int columns = source.width / target.width;
    const int rows = source.height / target.height;
    const ShortReciprocal area(columns * rows);
    std::vector<std::uint16_t> sums(static_cast<std::size_t>(rowBytes(source)) + kSlack);
    for (int y = 0; y < target.height; ++y) {
        addRows<Ratio>(source.row(y * rows), source.stride, rows, rowBytes(source), sums.data());
        averageColumns<Ratio, Channels>(sums.data(), columns, area, target.row(y), target.width);
    }
}

// ---- Any ratio

// The quotient by `area`, 1 to 2^23 - 1, of numbers below 256 x area: n / area = n x multiplier >> shift. With the
// least shift for which 2^shift >= 256 x area^2, and the multiplier 2^shift / area rounded down plus 1, too large by e
// / area with e <= area, the quotient is exact since n x e < 2^shift. The multiplier is at most 512 x area + 1 < 2^32,
// and n times it less than 2^64.
constexpr std::uint64_t kLargestArea = (1u << 23) - 1;
struct Reciprocal {
    __m128i multiplier; // in both 64-bit lanes
    __m128i shift;
    __m128i half;

    explicit Reciprocal(std::uint64_t area) {
        const int bits = static_cast<int>(std::bit_width(256 * area * area - 1));
        // NOLINTNEXTLINE(bugprone-misplaced-widening-cast): as wide before as after
        multiplier = _mm_set1_epi64x(static_cast<long long>((std::uint64_t{1} << bits) / area + 1));
        shift = _mm_cvtsi32_si128(bits);
        half = _mm_set1_epi64x(static_cast<long long>(area / 2));
    }
    // Rounds halves up; the numbers stand in the 64-bit lanes.
    __m128i divide(__m128i sums) const {
        return _mm_srl_epi64(_mm_mul_epu32(_mm_add_epi64(sums, half), multiplier), shift);
    }
};

// Rows are multiplied as signed 16-bit numbers: a weight and a sum of whole rows must not exceed these.
constexpr std::uint32_t kLargestWeight = std::numeric_limits<std::int16_t>::max();
constexpr int kMostWholeRows = std::numeric_limits<std::int16_t>::max() / 255;

// Weighted sums of the rows under a target row, one a byte of a source row: at most 255 x AxisCoverage::total.
void addWeightedRows(const ConstImageView& source, const Coverage& rows, std::uint32_t wholePixel,
                     std::uint32_t* sums) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i outerWeights = _mm_set1_epi32(static_cast<int>(rows.firstWeight | rows.lastWeight << 16));
    const __m128i innerWeight = _mm_set1_epi32(static_cast<int>(wholePixel));
    const auto addFour = [=](std::uint32_t* out, __m128i outer, __m128i inner) {
        storeBlock(out, _mm_add_epi32(_mm_madd_epi16(outer, outerWeights), _mm_madd_epi16(inner, innerWeight)));
    };
    const auto addEight = [=](std::uint32_t* out, __m128i first, __m128i last, __m128i inner) {
        addFour(out, _mm_unpacklo_epi16(first, last), _mm_unpacklo_epi16(inner, zero));
        addFour(out + 4, _mm_unpackhi_epi16(first, last), _mm_unpackhi_epi16(inner, zero));
    };
    const std::uint8_t* firstRow = source.row(rows.first);
    const std::uint8_t* lastRow = source.row(rows.last);
    forEachBlock(rowBytes(source), [=, &source](int at) {
        __m128i low = zero;
        __m128i high = zero;
        const std::uint8_t* row = firstRow + at;
        for (int y = rows.first + 1; y < rows.last; ++y) {
            row += source.stride;
            const __m128i block = loadBlock(row);
            low = _mm_add_epi16(low, _mm_unpacklo_epi8(block, zero));
            high = _mm_add_epi16(high, _mm_unpackhi_epi8(block, zero));
        }
        const __m128i first = loadBlock(firstRow + at);
        const __m128i last = loadBlock(lastRow + at);
        addEight(sums + at, _mm_unpacklo_epi8(first, zero), _mm_unpacklo_epi8(last, zero), low);
        addEight(sums + at + 8, _mm_unpackhi_epi8(first, zero), _mm_unpackhi_epi8(last, zero), high);
    });
}

// A pixel's sums: blue and red in the 64-bit lanes of one register, green and alpha in the other.
struct PixelSums {
    __m128i even;
    __m128i odd;
};

PixelSums weighted(__m128i pixel, std::uint32_t weight) {
    const __m128i weights = _mm_set1_epi32(static_cast<int>(weight));
    return {_mm_mul_epu32(pixel, weights), _mm_mul_epu32(_mm_srli_epi64(pixel, 32), weights)};
}

PixelSums operator+(const PixelSums& a, const PixelSums& b) {
    return {_mm_add_epi64(a.even, b.even), _mm_add_epi64(a.odd, b.odd)};
}

template <int Channels>
void averageWeightedColumns(const std::uint32_t* sums, const AxisCoverage& columns, const Reciprocal& area,
                            std::uint8_t* out) {
    const Coverage* const end = columns.pixels.data() + columns.pixels.size();
    for (const Coverage* covered = columns.pixels.data(); covered != end; ++covered, out += Channels) {
        const std::uint32_t* pixel = sums + static_cast<std::ptrdiff_t>(covered->first) * Channels;
        const std::uint32_t* const last = sums + static_cast<std::ptrdiff_t>(covered->last) * Channels;
        PixelSums total =
            weighted(loadBlock(pixel), covered->firstWeight) + weighted(loadBlock(last), covered->lastWeight);
        __m128i inner = _mm_setzero_si128();
        for (pixel += Channels; pixel < last; pixel += Channels)
            inner = _mm_add_epi32(inner, loadBlock(pixel));
        total = total + weighted(inner, columns.wholePixel);
        const __m128i quotients = _mm_or_si128(area.divide(total.even), _mm_slli_epi64(area.divide(total.odd), 32));
        const __m128i words = _mm_packs_epi32(quotients, quotients);
        storePixel<Channels>(out, _mm_packus_epi16(words, words), covered + 1 == end);
    }
}

} // namespace

bool resampleWholeRatio(const ConstImageView& source, const ImageView& target) {
    if (!canSumBlocks(source, target) || source.width % target.width != 0 || source.height % target.height != 0)
        return false;
    const int columns = source.width / target.width;
    const int rows = source.height / target.height;
    if (columns > kLargestShortArea || rows > kLargestShortArea || columns * rows > kLargestShortArea ||
        columns * rows < 2)
        return false;
    const int ratio = columns == rows && columns <= 3 ? columns : 0;
    const bool alpha = source.bits == 32;
    const auto average = ratio == 2   ? alpha ? averageWholeRatio<2, 4> : averageWholeRatio<2, 3>
                           : ratio == 3 ? alpha ? averageWholeRatio<3, 4> : averageWholeRatio<3, 3>
                           : alpha ? averageWholeRatio<0, 4>
                                      : averageWholeRatio<0, 3>;
    average(source, target);
    return true;
}

bool resampleFractionalRatio(const ConstImageView& source, const ImageView& target) {
    if (!canSumBlocks(source, target))
        return false;
    const AxisCoverage columns(source.width, target.width);
    const AxisCoverage rows(source.height, target.height);
    const std::uint64_t area = std::uint64_t{columns.total} * rows.total;
    if (area > kLargestArea || rows.wholePixel > kLargestWeight || rows.total > kLargestWeight ||
        source.height / target.height > kMostWholeRows)
        return false;
    const Reciprocal reciprocal(area);
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(rowBytes(source)) + kSlack);
    for (int y = 0; y < target.height; ++y) {
        addWeightedRows(source, rows.pixels[static_cast<std::size_t>(y)], rows.wholePixel, sums.data());
        if (source.bits == 32)
            averageWeightedColumns<4>(sums.data(), columns, reciprocal, target.row(y));
        else
            averageWeightedColumns<3>(sums.data(), columns, reciprocal, target.row(y));
    }
    return true;
}

} // namespace veldran
