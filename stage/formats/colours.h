// The colours of pictures: which there are and how often, and a palette of fewer.
#pragma once

#include "document/pixel_map.h"

#include <cstddef>
#include <span>
#include <vector>

namespace stage {

// Counts the colours of many pictures, up to a number of them. Opacities count as part of the colour.
class ColourCount {
public:
    explicit ColourCount(std::size_t limit) : limit_(limit) {}

    void add(std::span<const Pixel> pixels);
    // More colours than the limit: those beyond it were not counted.
    bool isOverLimit() const { return overLimit_; }
    std::size_t size() const { return counts_.size(); }
    // The most frequent first; equally frequent ones by their value.
    std::vector<Pixel> byFrequency() const;
    const PixelMap<std::uint64_t>& counts() const { return counts_; }

private:
    std::size_t limit_;
    bool overLimit_ = false;
    PixelMap<std::uint64_t> counts_;
};

// At most `size` (1 to 256) opaque colours that stand for the opaque ones of `counts`: the set of colours is cut where
// that lowers the squared error most, then every part's mean is moved to the colours that are nearest to it.
std::vector<Pixel> reducedPalette(const PixelMap<std::uint64_t>& counts, std::size_t size);

// The nearest of the colours, at least one, by squared distance of red, green and blue; the first of equally near ones.
Pixel nearestColour(std::span<const Pixel> palette, Pixel pixel);

} // namespace stage
