// How many pixels of an animation have each of the 2^24 colours. Core: knows no windows.
#pragma once

#include "colour/morton.h"
#include "render/image_view.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace veldran {

// A colour, or the mean of a cube of neighbouring colours, and the number of pixels that have it.
struct ColourPoint {
    std::array<float, 3> place; // red, green, blue
    float weight;               // to 24 bits; what is 2^24 times lighter than the rest moves no palette
};

class ColourHistogram {
public:
    // 32 MB of address space, of which only the cubes that occur are touched: thousands of frames take no more than
    // one. Throws std::bad_alloc.
    ColourHistogram();

    // Counts the pixels of all frames, 24 or 32 bits, of any sizes. The order of the frames does not matter.
    void count(std::span<const ConstImageView> frames);
    // Forgets the pixels of one colour.
    void remove(Colour colour);

    // Every colour that occurs, or, when there are more than `most`, the means of the smallest cubes (2, 4 or 8 levels
    // a side) that are at most so many; of cubes of 8 levels there may be up to 32768. In Morton order, so the result
    // does not depend on the order of pixels.
    std::vector<ColourPoint> points(std::size_t most) const;

private:
    static constexpr int kCubeShift = 9; // cubes of 8 levels a side: 512 colours

    struct Carry {
        std::uint32_t index;
        std::uint64_t pixels;
    };

    void countSameShape(std::span<const ConstImageView> frames);
    void countRun(const std::uint8_t* pixel, int length, int bytesPerPixel, std::uint32_t times);
    void carry(std::uint32_t index, std::uint64_t pixels);
    void clearCube(std::uint32_t cube);
    template <class Visit>
    void forEachColour(Visit visit) const;

    std::unique_ptr<std::uint16_t[]> counts_; // in Morton order; valid where the cube is touched
    std::vector<std::uint8_t> touched_;       // a cube each
    std::vector<Carry> carries_;              // what 16 bits did not hold; an entry stands for 65535 pixels at least
};

} // namespace veldran
