// A cube of colours asks only the entries that can be nearest to some place in it, mostly two to six of them.
#include "colour/nearest_colours.h"

#include <algorithm>
#include <limits>

namespace veldran {
namespace {

constexpr std::size_t kSide = 8;
constexpr std::size_t kColoursOfCube = kSide * kSide * kSide;

// Where the colours of a cube, red by red, green by green, blue by blue, stand in Morton order.
constexpr std::array<std::uint16_t, kColoursOfCube> makeCubeOrder() {
    std::array<std::uint16_t, kColoursOfCube> order{};
    constexpr unsigned kLine = kSide;
    for (unsigned i = 0; i < kColoursOfCube; ++i)
        order[i] = static_cast<std::uint16_t>(mortonIndex(i / (kLine * kLine), i / kLine % kLine, i % kLine));
    return order;
}
constexpr std::array<std::uint16_t, kColoursOfCube> kCubeOrder = makeCubeOrder();

// A distance and the entry that has it in one number, so that the least of them is the lowest of the nearest entries.
// Distances are taken in half levels, because the middle of two levels lies between them: 3 x 510^2 x 256 fits 31 bits.
constexpr int kEntryBits = 8;

// Squared distances along one axis from a place to eight others; all in half levels.
std::array<std::int32_t, kSide> axisDistances(std::int32_t place, std::int32_t first, std::int32_t step) {
    std::array<std::int32_t, kSide> distances{};
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(kSide); ++i) {
        const std::int32_t difference = first + i * step - place;
        distances[static_cast<std::size_t>(i)] = (difference * difference) << kEntryBits;
    }
    return distances;
}

} // namespace

NearestColours::NearestColours(const Palette& palette, int count, int step)
    : step_(step), stepShift_(step == 1   ? 0
                              : step == 2 ? 3
                                          : 6),
      entries_(std::make_unique_for_overwrite<std::uint8_t[]>(kMortonColours >> stepShift_)),
      known_(kMortonColours >> stepShift_ >> kCubeShift) {
    static_assert(kSide == std::size_t{1} << kCubeBits);
    for (int i = 0; i < count; ++i) {
        const PaletteEntry& entry = palette[static_cast<std::size_t>(i)];
        points_.add({static_cast<float>(entry.red), static_cast<float>(entry.green), static_cast<float>(entry.blue)},
                    static_cast<std::uint8_t>(i));
    }
}

void NearestColours::fillCube(std::uint32_t cube) {
    const std::array<int, 3> low = mortonChannels(cube << kCubeShift << stepShift_);
    ColourBox box;
    for (std::size_t c = 0; c < 3; ++c) {
        box.low[c] = static_cast<float>(low[c]);
        box.high[c] = static_cast<float>(low[c] + static_cast<int>(kSide) * step_ - 1);
    }
    PointSet candidates;
    findCandidates(points_, box, candidates);
    std::uint8_t* entries = entries_.get() + (std::size_t{cube} << kCubeShift);
    known_[cube] = 1;
    if (candidates.count == 1) {
        std::fill_n(entries, kColoursOfCube, candidates.number[0]);
        return;
    }
    std::array<std::int32_t, kColoursOfCube> least;
    least.fill(INT32_MAX);
    for (std::size_t i = 0; i < candidates.count; ++i) {
        std::array<std::array<std::int32_t, kSide>, 3> along;
        for (std::size_t c = 0; c < 3; ++c)
            along[c] =
                axisDistances(2 * static_cast<std::int32_t>(candidates.axis[c][i]), 2 * low[c] + step_ - 1, 2 * step_);
        for (std::size_t line = 0; line < kSide * kSide; ++line) {
            const std::int32_t start = along[0][line / kSide] + along[1][line % kSide] + candidates.number[i];
            for (std::size_t blue = 0; blue < kSide; ++blue) {
                std::int32_t& best = least[line * kSide + blue];
                best = std::min(best, start + along[2][blue]);
            }
        }
    }
    for (std::size_t i = 0; i < kColoursOfCube; ++i)
        entries[kCubeOrder[i]] = static_cast<std::uint8_t>(least[i]);
}

int stepThatKeepsEntries(const Palette& palette, int count) {
    int least = std::numeric_limits<int>::max();
    for (int i = 0; i < count; ++i)
        for (int k = 0; k < i; ++k)
            least = std::min(
                least, squaredDistance(palette[static_cast<std::size_t>(i)], palette[static_cast<std::size_t>(k)]));
    // The middle of a cube of n levels a side is (n - 1) / 2 x sqrt(3) from its corners. Were another entry nearer to
    // it than one in a corner, the two would be less than twice that apart.
    for (const int step : {4, 2})
        if (least >= 3 * (step - 1) * (step - 1))
            return step;
    return 1;
}

} // namespace veldran
