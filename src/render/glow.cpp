// Broad light is worked out at a reduced size, where it has nothing finer to lose; narrow light at full size.
#include "render/glow.h"

#include "render/cell_grid.h"

#include <algorithm>
#include <cstdlib>

namespace veldran {
namespace {

// Pixels of a cell: the most that leave the light a reach of three and a half cells, of the length's parity if more
// than one. Thin curves on dark ground then come out within 8 levels of 255 of those at full size, and no cells can be
// seen; with a reach of three cells it is 11 levels.
int cellSize(int length, int radius) {
    const int most = std::clamp(2 * radius / 7, 1, kLargestCell);
    return std::max(1, most - std::abs(length - most) % 2);
}

// Boxes as equal as can be, so that the sum of their radii is the reach of the light.
BoxWindows exactWindows(int radius) {
    return {{{radius / kBoxes}, {(radius + 1) / kBoxes}, {(radius + 2) / kBoxes}}};
}

// Boxes of cells that together with the cells spread light as far as the exact windows do. A box of radius r
// has the variance r (r + 1) / 3, so three boxes of a third of the radius have R / 3 x (R / 3 + 1); averaging cells of
// s pixels and enlarging them adds s^2 / 4. The edges make up for what a box of a whole radius lacks.
BoxWindows cellWindows(int radius, int cell) {
    const double third = radius / 3.0;
    const double variance = (third * (third + 1) / (cell * cell) - 0.25) / kBoxes;
    int whole = 0;
    while ((whole + 1) * (whole + 2) / 3.0 <= variance)
        ++whole;
    const double edge = (2 * whole + 1) * (variance - whole * (whole + 1) / 3.0) /
                        (2 * ((whole + 1) * (whole + 1) - variance)); // of an inner weight of 1, and less than it
    const int inner = 256 / (2 * whole + 3);
    const int outer = static_cast<int>(edge * inner + 0.5);
    const BoxWindow box = outer > 0 ? BoxWindow{whole, inner, outer} : BoxWindow{whole};
    return {box, box, box};
}

BoxWindows windowsFor(int radius, int cell) {
    return cell == 1 ? exactWindows(radius) : cellWindows(radius, cell);
}

// The same rows in the order of memory, in which they are read faster; light spreads alike both ways.
ImageView inMemoryOrder(const ImageView& image) {
    if (image.stride >= 0)
        return image;
    return {image.row(image.height - 1), image.width, image.height, -image.stride, image.bits, image.colourTable};
}

// Replaces 16 bytes at a time by combine(original, blurred); makeCombine(scale) gives what takes words that count in
// 1 / scale, 64 to 128.
template <class MakeCombine>
void blurAndCombine(const ImageView& given, int radius, MakeCombine makeCombine) {
    if (radius <= 0)
        return;
    const ImageView image = inMemoryOrder(given);
    const int reach = std::min(radius, kLargestBlurRadius);
    const Cells across(image.width, cellSize(image.width, reach));
    const Cells down(image.height, cellSize(image.height, reach));
    const BoxWindows windowsAcross = windowsFor(reach, across.size);
    const BoxWindows windowsDown = windowsFor(reach, down.size);
    if (across.size == 1 && down.size == 1) {
        const auto combine = makeCombine(128);
        return boxBlur(image, windowsAcross, windowsDown, [&combine](__m128i original, const Words& blurred) {
            return combine(original, Words{_mm_slli_epi16(blurred.low, 7), _mm_slli_epi16(blurred.high, 7)});
        });
    }
    const CellGrid grid(image, across, down);
    boxBlur(grid.cells(), windowsAcross, windowsDown, [](__m128i, const Words& blurred) { return packed(blurred); });
    grid.enlargeInto(image, makeCombine(grid.scale()));
}

// Rounds words to bytes.
class Replace {
public:
    explicit Replace(int scale)
        : half_(_mm_set1_epi16(static_cast<short>(scale / 2))),
          multiplier_(_mm_set1_epi16(static_cast<short>((65536 + scale / 2) / scale))) {}
    __m128i operator()(__m128i, const Words& blurred) const {
        return packed({rounded(blurred.low), rounded(blurred.high)});
    }

private:
    __m128i rounded(__m128i words) const { return _mm_mulhi_epu16(_mm_add_epi16(words, half_), multiplier_); }
    __m128i half_;
    __m128i multiplier_;
};

// Parts of what a pixel differs from the blurred image, at full strength. A line thinner than the radius leaves little
// light in the blurred image, so the halo takes more than all of it; much more would fill acute angles. The core's part
// heats thin lines, yet draws no seams along the edges of wide ones.
constexpr int kHaloEighths = 12;
constexpr int kCoreEighths = 3;
// Weights count in scale / 65536, which is 64 / 65536 at least: 20 x 65536 / 64 x 12 / 8 = 30720 at most, below 2^15.
constexpr int kMostStrength = 2000;

class Lift {
public:
    Lift(int strength, int scale)
        : scale_(_mm_set1_epi16(static_cast<short>(scale))), halo_(weight(strength, scale, kHaloEighths)),
          core_(weight(strength, scale, -kCoreEighths)) {}
    __m128i operator()(__m128i original, const Words& blurred) const {
        const __m128i zero = _mm_setzero_si128();
        const __m128i lift = packed({lifted(_mm_unpacklo_epi8(original, zero), blurred.low),
                                     lifted(_mm_unpackhi_epi8(original, zero), blurred.high)});
        return _mm_adds_epu8(original, lift);
    }

private:
    static __m128i weight(int strength, int scale, int eighths) {
        const int limited = std::clamp(strength, 0, kMostStrength);
        return _mm_set1_epi16(static_cast<short>(limited * 65536LL * eighths / (800 * scale)));
    }
    // One of the two products is negative unless both are zero.
    __m128i lifted(__m128i original, __m128i blurred) const {
        const __m128i lacking = _mm_sub_epi16(blurred, _mm_mullo_epi16(original, scale_));
        return _mm_max_epi16(_mm_mulhi_epi16(lacking, halo_), _mm_mulhi_epi16(lacking, core_));
    }
    __m128i scale_;
    __m128i halo_;
    __m128i core_;
};

} // namespace

void blurImage(const ImageView& image, int radius) {
    blurAndCombine(image, radius, [](int scale) { return Replace(scale); });
}

void glowImage(const ImageView& image, int strength, int radius) {
    blurAndCombine(image, radius, [strength](int scale) { return Lift(strength, scale); });
}

} // namespace veldran
