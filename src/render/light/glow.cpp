// Broad light is worked out at a reduced size, where it has nothing finer to lose; narrow light at full size.
#include "render/light/glow.h"

#include "render/light/box_blur.h"
#include "render/light/cell_grid.h"
#include "render/light/light_loops.h"

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

LightUse replacing(int scale) {
    return {false, scale, 0, 0};
}

// `useOf(scale)` says what becomes of light that counts in 1 / scale.
template <class UseOf>
void spreadLight(const LightLoops& loops, const ImageView& given, int radius, UseOf useOf) {
    if (radius <= 0)
        return;
    const ImageView image = inMemoryOrder(given);
    const int reach = std::min(radius, kLargestBlurRadius);
    const Cells across(image.width, cellSize(image.width, reach));
    const Cells down(image.height, cellSize(image.height, reach));
    const BoxWindows windowsAcross = windowsFor(reach, across.size);
    const BoxWindows windowsDown = windowsFor(reach, down.size);
    if (across.size == 1 && down.size == 1)
        return boxBlur(loops, image, windowsAcross, windowsDown, useOf(kBlurScale));
    const CellGrid grid(loops, image, across, down);
    boxBlur(loops, grid.cells(), windowsAcross, windowsDown, replacing(kBlurScale));
    grid.enlargeInto(image, useOf(grid.scale()));
}

// Parts of what a pixel differs from the blurred image, at full strength. A line thinner than the radius leaves little
// light in the blurred image, so the halo takes more than all of it; much more would fill acute angles. The core's part
// heats thin lines, yet draws no seams along the edges of wide ones.
constexpr int kHaloEighths = 12;
constexpr int kCoreEighths = 3;
// Weights count in scale / 65536, which is 64 / 65536 at least: 20 x 65536 / 64 x 12 / 8 = 30720 at most, below 2^15.
constexpr int kMostStrength = 2000;

LightUse lifting(int strength, int scale) {
    const auto weight = [=](int eighths) {
        const int limited = std::clamp(strength, 0, kMostStrength);
        return static_cast<std::int16_t>(limited * 65536LL * eighths / (800 * scale));
    };
    return {true, scale, weight(kHaloEighths), weight(-kCoreEighths)};
}

} // namespace

void blurImage(const ImageView& image, int radius, const LightLoops& loops) {
    spreadLight(loops, image, radius, replacing);
}

void glowImage(const ImageView& image, int strength, int radius, const LightLoops& loops) {
    spreadLight(loops, image, radius, [strength](int scale) { return lifting(strength, scale); });
}

} // namespace veldran
