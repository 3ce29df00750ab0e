// Which source pixels lie under each target pixel along one axis, and by how much. Core: knows no windows.
#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <vector>

namespace veldran {

// The source pixels [first, last] under a target pixel; all but these two weigh AxisCoverage::wholePixel each.
struct Coverage {
    int first;
    int last;
    std::uint32_t firstWeight;
    std::uint32_t lastWeight; // 0 when first == last
};

// An axis is measured in the largest unit that divides source and target pixels evenly, so every overlap is a whole
// number and the weights of a target pixel sum to `total`, which is at most the source's length.
struct AxisCoverage {
    std::vector<Coverage> pixels; // one a target pixel
    std::uint32_t wholePixel;     // units of one source pixel
    std::uint32_t total;          // units of one target pixel

    // Both lengths are at least 1. Throws std::bad_alloc.
    AxisCoverage(int sourceLength, int targetLength) : pixels(static_cast<std::size_t>(targetLength)) {
        const int common = std::gcd(sourceLength, targetLength);
        const std::int64_t pixelUnits = targetLength / common;
        const std::int64_t targetUnits = sourceLength / common;
        wholePixel = static_cast<std::uint32_t>(pixelUnits);
        total = static_cast<std::uint32_t>(targetUnits);
        std::int64_t begin = 0;
        for (Coverage& c : pixels) {
            const std::int64_t end = begin + targetUnits;
            // What divides a length evenly is no longer, so a pixel has units.
            c.first = static_cast<int>(begin / pixelUnits); // NOLINT(clang-analyzer-core.DivideZero)
            c.last = static_cast<int>((end - 1) / pixelUnits);
            c.firstWeight = static_cast<std::uint32_t>(std::min((c.first + 1) * pixelUnits, end) - begin);
            c.lastWeight = c.last == c.first ? 0 : static_cast<std::uint32_t>(end - c.last * pixelUnits);
            begin = end;
        }
    }
};

} // namespace veldran
