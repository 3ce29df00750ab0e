// Which of up to 256 points can be the nearest to a place in a box: the search that palettes are made and used with.
// Core: knows no windows.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace veldran {

inline constexpr std::size_t kMostEntries = 256;

// Points in the colour cube, 0 to 255 on each axis, stored axis by axis so that loops over them become vectors. Where
// all coordinates are whole numbers, squared distances are exact: they reach 3 x 255^2 = 195075, and a float holds
// every whole number up to 2^24.
struct PointSet {
    std::array<std::array<float, kMostEntries>, 3> axis;
    std::array<std::uint8_t, kMostEntries> number; // which entry or cluster the point is
    std::size_t count = 0;

    void add(const std::array<float, 3>& place, std::uint8_t pointNumber) {
        for (std::size_t c = 0; c < 3; ++c)
            axis[c][count] = place[c];
        number[count++] = pointNumber;
    }
    std::array<float, 3> place(std::size_t i) const { return {axis[0][i], axis[1][i], axis[2][i]}; }
};

struct ColourBox {
    std::array<float, 3> low;
    std::array<float, 3> high; // inclusive
};

// Fills `found` with those of `points`, in their order, that are nearest to some place in the box or as near as the
// nearest. A point drops out when another one is nearer to the whole box than it is to any place of it.
inline void findCandidates(const PointSet& points, const ColourBox& box, PointSet& found) {
    std::array<float, kMostEntries> nearest; // squared distances to the nearest place of the box
    float bound = std::numeric_limits<float>::max();
    for (std::size_t i = 0; i < points.count; ++i) {
        float nearSum = 0;
        float farSum = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const float below = box.low[c] - points.axis[c][i];
            const float above = points.axis[c][i] - box.high[c];
            const float outside = std::max(std::max(below, above), 0.0F);
            const float across = std::min(below, above); // minus the distance to the further end
            nearSum += outside * outside;
            farSum += across * across;
        }
        nearest[i] = nearSum;
        bound = std::min(bound, farSum);
    }
    found.count = 0;
    for (std::size_t i = 0; i < points.count; ++i)
        if (nearest[i] <= bound)
            found.add(points.place(i), points.number[i]);
}

} // namespace veldran
