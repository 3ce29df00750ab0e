// The palette entry nearest to a colour, for all 2^24 colours, found when it is first asked for. Core: knows no
// windows.
#pragma once

#include "colour/candidates.h"
#include "colour/morton.h"
#include "colour/palette.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace veldran {

class NearestColours {
public:
    // The first `count` entries, 1 to 256, of `palette` take part. With `step` 1 the table has all 2^24 colours: 16 MB
    // of address space, of which only the cubes that are asked for are touched. With `step` 2 or 4 the colours of a
    // cube of so many levels a side share the entry that is nearest to its middle: 2 MB or 256 KB, which caches hold.
    // Throws std::bad_alloc.
    NearestColours(const Palette& palette, int count, int step = 1);

    // The entry of least squared RGB distance, the lowest of equals. Channels are 0 to 255.
    std::uint8_t entryFor(unsigned red, unsigned green, unsigned blue) {
        const std::uint32_t index = mortonIndex(red, green, blue) >> stepShift_;
        if (known_[index >> kCubeShift] == 0)
            fillCube(index >> kCubeShift);
        return entries_[index];
    }

private:
    static constexpr int kCubeBits = 3; // cubes of 8 steps a side are filled at once: 512 places
    static constexpr int kCubeShift = 3 * kCubeBits;

    void fillCube(std::uint32_t cube);

    PointSet points_;
    int step_;
    int stepShift_;
    std::unique_ptr<std::uint8_t[]> entries_; // in Morton order; valid where the cube is known
    std::vector<std::uint8_t> known_;         // a cube each
};

// The coarsest step at which every colour of the palette still finds its own entry.
int stepThatKeepsEntries(const Palette& palette, int count);

} // namespace veldran
