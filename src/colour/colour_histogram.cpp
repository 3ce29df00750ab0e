// Counting is one addition a pixel in a table that holds alike colours together; pixels that stand still from one frame
// to the next are compared instead and counted once with the number of frames.
#include "colour/colour_histogram.h"

#include "colour/pixel_runs.h"

#include <algorithm>
#include <cstring>

namespace veldran {
namespace {

constexpr std::uint32_t kLargestCount = 0xFFFF;

// The channels of the colours of a cube of 8 levels a side, from its darkest one on.
constexpr std::size_t kCubeColours = std::size_t{1} << 9;
constexpr std::array<std::array<std::uint8_t, 3>, kCubeColours> makeCubeChannels() {
    std::array<std::array<std::uint8_t, 3>, kCubeColours> all{};
    for (std::uint32_t i = 0; i < kCubeColours; ++i)
        for (std::size_t c = 0; c < 3; ++c)
            all[i][c] = static_cast<std::uint8_t>(mortonChannels(i)[c]);
    return all;
}
constexpr std::array<std::array<std::uint8_t, 3>, kCubeColours> kCubeChannels = makeCubeChannels();

// The sums of a cube of colours. Doubles hold whole numbers up to 2^53: enough for 2^45 pixels of 255.
struct CubeSum {
    std::array<double, 3> channel{};
    double pixels = 0;

    void add(std::uint32_t index, double weight) {
        const std::array<std::uint8_t, 3>& channels = kCubeChannels[index % kCubeColours];
        for (std::size_t c = 0; c < 3; ++c)
            channel[c] += weight * channels[c];
        pixels += weight;
    }
    // `index` is that of any colour in the cube.
    ColourPoint mean(std::uint32_t index) const {
        const std::array<int, 3> darkest = mortonChannels(index & ~static_cast<std::uint32_t>(kCubeColours - 1));
        ColourPoint point{{}, static_cast<float>(pixels)};
        for (std::size_t c = 0; c < 3; ++c)
            point.place[c] = static_cast<float>(darkest[c] + channel[c] / pixels);
        return point;
    }
};

} // namespace

// The table stays as it comes: a cube is cleared when its first pixel arrives.
ColourHistogram::ColourHistogram()
    : counts_(std::make_unique_for_overwrite<std::uint16_t[]>(kMortonColours)), touched_(kMortonColours >> kCubeShift) {
}

void ColourHistogram::count(std::span<const ConstImageView> frames) {
    while (!frames.empty()) {
        std::size_t alike = 1;
        while (alike < frames.size() && sameShape(frames[0], frames[alike]))
            ++alike;
        countSameShape(frames.first(alike));
        frames = frames.subspan(alike);
    }
}

void ColourHistogram::countSameShape(std::span<const ConstImageView> frames) {
    const int width = frames[0].width;
    const int bytes = frames[0].bytesPerPixel();
    struct HeldRun {
        const std::uint8_t* pixels;
        std::uint32_t times; // frames that show it
    };
    std::vector<HeldRun> held(static_cast<std::size_t>((width + kRunPixels - 1) / kRunPixels));
    const auto lengthOf = [width](std::size_t run) {
        return std::min(kRunPixels, width - static_cast<int>(run) * kRunPixels);
    };
    for (int y = 0; y < frames[0].height; ++y) {
        const auto pixelsOf = [y, bytes](const ConstImageView& frame, std::size_t run) {
            return frame.row(y) + static_cast<std::ptrdiff_t>(run) * kRunPixels * bytes;
        };
        for (std::size_t run = 0; run < held.size(); ++run)
            held[run] = {pixelsOf(frames[0], run), 1};
        for (const ConstImageView& frame : frames.subspan(1))
            for (std::size_t run = 0; run < held.size(); ++run) {
                const std::uint8_t* pixels = pixelsOf(frame, run);
                const int length = lengthOf(run);
                if (sameRun(pixels, held[run].pixels, length, bytes)) {
                    ++held[run].times;
                } else {
                    countRun(held[run].pixels, length, bytes, held[run].times);
                    held[run] = {pixels, 1};
                }
            }
        for (std::size_t run = 0; run < held.size(); ++run)
            countRun(held[run].pixels, lengthOf(run), bytes, held[run].times);
    }
}

void ColourHistogram::countRun(const std::uint8_t* pixel, int length, int bytesPerPixel, std::uint32_t times) {
    for (int i = 0; i < length; ++i, pixel += bytesPerPixel) {
        const std::uint32_t index = mortonIndex(pixel[2], pixel[1], pixel[0]);
        if (touched_[index >> kCubeShift] == 0)
            clearCube(index >> kCubeShift);
        const std::uint64_t sum = std::uint64_t{counts_[index]} + times;
        counts_[index] = static_cast<std::uint16_t>(sum);
        if (sum > kLargestCount)
            carry(index, sum);
    }
}

void ColourHistogram::clearCube(std::uint32_t cube) {
    std::fill_n(counts_.get() + cube * kCubeColours, kCubeColours, std::uint16_t{0});
    touched_[cube] = 1;
}

// One pixel stays in the table, so that zero there always means that a colour does not occur.
void ColourHistogram::carry(std::uint32_t index, std::uint64_t pixels) {
    carries_.push_back({index, pixels - 1});
    counts_[index] = 1;
}

void ColourHistogram::remove(Colour colour) {
    const std::uint32_t index = mortonIndex(colour);
    if (touched_[index >> kCubeShift] != 0)
        counts_[index] = 0;
    std::erase_if(carries_, [index](const Carry& carry) { return carry.index == index; });
}

// Calls `visit` with index and 16-bit count of every colour that occurs, in Morton order.
template <class Visit>
void ColourHistogram::forEachColour(Visit visit) const {
    constexpr std::size_t kAtOnce = 4; // counts that make one 64-bit word
    for (std::size_t cube = 0; cube < touched_.size(); ++cube) {
        if (touched_[cube] == 0)
            continue;
        const std::size_t first = cube * kCubeColours;
        for (std::size_t i = first; i < first + kCubeColours; i += kAtOnce) {
            std::uint64_t word = 0;
            std::memcpy(&word, counts_.get() + i, sizeof word);
            if (word == 0)
                continue;
            for (std::size_t k = i; k < i + kAtOnce; ++k)
                if (counts_[k] != 0)
                    visit(static_cast<std::uint32_t>(k), counts_[k]);
        }
    }
}

std::vector<ColourPoint> ColourHistogram::points(std::size_t most) const {
    constexpr int kLevels = 4; // cubes of 1, 2, 4 and 8 levels a side
    std::array<std::size_t, kLevels> cubes{};
    std::uint32_t last = ~std::uint32_t{0};
    forEachColour([&](std::uint32_t index, std::uint16_t) {
        // The highest bit in which two neighbours of the order differ tells which cubes begin with the second.
        for (int level = 0; level < kLevels; ++level)
            cubes[static_cast<std::size_t>(level)] += last >> 3 * level != index >> 3 * level ? 1 : 0;
        last = index;
    });
    int level = 0;
    while (level + 1 < kLevels && cubes[static_cast<std::size_t>(level)] > most)
        ++level;

    std::vector<Carry> carries = carries_;
    std::ranges::sort(carries, {}, &Carry::index);
    auto carried = carries.begin();
    std::vector<ColourPoint> points;
    points.reserve(cubes[static_cast<std::size_t>(level)]);
    CubeSum sum;
    std::uint32_t before = 0;
    forEachColour([&](std::uint32_t index, std::uint16_t count) {
        if (index >> 3 * level != before >> 3 * level && sum.pixels > 0) {
            points.push_back(sum.mean(before));
            sum = {};
        }
        before = index;
        double pixels = count;
        for (; carried != carries.end() && carried->index == index; ++carried)
            pixels += static_cast<double>(carried->pixels);
        sum.add(index, pixels);
    });
    if (sum.pixels > 0)
        points.push_back(sum.mean(before));
    return points;
}

} // namespace veldran
