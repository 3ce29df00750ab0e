// The inner loops of blur and glow, for registers of two lengths. All that is done with a register stays within its
// halves of 16 bytes, so a longer one does the work of two and not a bit differs. Core: knows no windows.
#pragma once

#include <cstddef>
#include <cstdint>

namespace veldran {

constexpr int kBoxes = 3;
constexpr int kSlotRegisters = 8;    // two for a box; the rest makes their places powers of two
constexpr int kLargestCell = 5;      // pixels a side; more would overflow words of 16 bits
constexpr int kLongestRegister = 32; // bytes

// Words of 16 bits are averaged as (sum x inner + edges x edge + half) x multiplier >> 16.
struct Box {
    int radius;
    std::uint16_t inner;
    std::uint16_t edge;
    std::uint16_t half;
    std::uint16_t multiplier;
};

// Averages of averages of averages.
struct BoxCascade {
    Box boxes[kBoxes];
    bool hasEdges;      // all boxes may have, or none has
    int delays[kBoxes]; // places by which a box's averages lag behind what enters it
    int delay;          // of all boxes
    int slots;          // for the values inside a window; a power of two
    int state;          // registers for what has to be known of a strip between two of its places
};

constexpr int kBlurScale = 128; // of what a blur gives

// What becomes of a pixel and the light on it. Light counts in 1 / scale, 64 to 128.
struct LightUse {
    bool lifts; // or else light takes the pixel's place
    int scale;
    std::int16_t halo; // 65536 / scale of what a pixel lacks, times the part it gets
    std::int16_t core; // the same, negative, of what it exceeds the light by
};

// An image of 24 or 32 bits to be blurred in place.
struct BlurJob {
    std::uint8_t* top;
    std::ptrdiff_t stride;
    int width;
    int height;
    int channels;
    BoxCascade across;
    BoxCascade down;
    LightUse use;
    // Memory of any contents: for as many rows as a register has bytes, turned by 90 degrees and as they are, both of
    // rows of whole registers; for the state of a strip across, and for the states of all strips down.
    std::uint8_t* turned;
    std::uint8_t* band;
    std::uint8_t* stateAcross;
    std::uint8_t* statesDown;
};

// Rows between the middles of two rows of cells: words move from those of one to those of the other in equal steps.
struct FillJob {
    std::uint8_t* top; // the first row
    std::ptrdiff_t stride;
    int rowBytes;
    int rows;
    const std::uint16_t* upper; // with room for a register of bytes behind what belongs to the row
    const std::uint16_t* lower;
    int weight; // of the lower ones in the first row, of 2 x size; 2 more in each that follows
    int size;
    LightUse use;
};

struct LightLoops {
    int lanes; // bytes of a register
    void (*blur)(const BlurJob& job);
    // Adds up `count` rows, kLargestCell at most. Behind the sums is room for those of a register of bytes.
    void (*sumRows)(const std::uint8_t* const* rows, int count, int rowBytes, std::uint16_t* sums);
    void (*fill)(const FillJob& job);
};

extern const LightLoops kSse2Light;
// For processors that have AVX2.
extern const LightLoops kAvx2Light;

// The best ones for this processor.
const LightLoops& bestLight();

} // namespace veldran
