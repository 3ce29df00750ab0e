// What the loops of a blur are given: factors, and memory for as many bytes as 108 rows with registers of 32 bytes and
// the narrowest windows, more with wider ones.
#include "render/light/box_blur.h"

#include <algorithm>
#include <bit>
#include <memory>

namespace veldran {
namespace {

// A weighted sum and the half that rounds are at most 256 x 255 + 128 < 2^16. The quotient is sum x multiplier >> 16
// with 65536 / weights rounded to nearest, which changes it by less than sum / 2^17, 0.499 at most. A flat window
// stands 1/2 - 1 / (2 x weights), or 1/2 for an even sum of weights, above a whole number, and both keep within that
// number's unit: a half stays below, and 255 odd weights move their 0.498 by 0.497 at most. A window of one value alone
// is x + 1 times 65535 instead, which is 65535 - x above 65536 x.
Box boxOf(const BoxWindow& window) {
    const int weights = window.weights();
    const bool single = weights == 1;
    return {window.radius, static_cast<std::uint16_t>(window.inner), static_cast<std::uint16_t>(window.edge),
            static_cast<std::uint16_t>(single ? 1 : weights / 2),
            static_cast<std::uint16_t>(single ? 65535 : (65536 + weights / 2) / weights)};
}

BoxCascade cascadeOf(const BoxWindows& windows) {
    BoxCascade cascade{};
    cascade.hasEdges = windows[0].edge != 0;
    int longest = 0;
    for (std::size_t k = 0; k < kBoxes; ++k) {
        cascade.boxes[k] = boxOf(windows[k]);
        cascade.delays[k] = windows[k].radius + cascade.hasEdges;
        cascade.delay += cascade.delays[k];
        longest = std::max(longest, 2 * windows[k].radius + 1);
    }
    cascade.slots = static_cast<int>(std::bit_ceil(static_cast<unsigned>(longest)));
    cascade.state = 4 * kBoxes + kSlotRegisters * cascade.slots;
    return cascade;
}

struct alignas(64) CacheLine { // two registers, so that none lies across two lines
    std::uint8_t bytes[64];
};

std::size_t linesFor(std::size_t registers, int lanes) {
    return (registers * static_cast<std::size_t>(lanes) + sizeof(CacheLine) - 1) / sizeof(CacheLine);
}

} // namespace

void boxBlur(const LightLoops& loops, const ImageView& image, const BoxWindows& across, const BoxWindows& down,
             const LightUse& use) {
    BlurJob job{image.top,         image.stride,    image.width, image.height, image.bytesPerPixel(),
                cascadeOf(across), cascadeOf(down), use,         nullptr,      nullptr,
                nullptr,           nullptr};
    const auto lanes = static_cast<std::size_t>(loops.lanes);
    const std::size_t strips = (static_cast<std::size_t>(job.width * job.channels) + lanes - 1) / lanes;
    const std::size_t rows = linesFor(strips * lanes, loops.lanes);
    const std::size_t stateAcross = linesFor(static_cast<std::size_t>(job.across.state), loops.lanes);
    const std::size_t statesDown = linesFor(strips * static_cast<std::size_t>(job.down.state), loops.lanes);
    const auto memory = std::make_unique_for_overwrite<CacheLine[]>(2 * rows + stateAcross + statesDown);
    job.turned = memory.get()->bytes;
    job.band = memory[rows].bytes;
    job.stateAcross = memory[2 * rows].bytes;
    job.statesDown = memory[2 * rows + stateAcross].bytes;
    loops.blur(job);
}

} // namespace veldran
