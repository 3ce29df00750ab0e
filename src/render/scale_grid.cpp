// Positions of lines are whole pixels, mirrored about the middle, so that every line is equally sharp.
#include "render/scale_grid.h"

#include <algorithm>
#include <cstdint>

namespace veldran {
namespace {

constexpr int kDivisions = 8;         // along the shorter side
constexpr int kLeastDivision = 12;    // pixels
constexpr int kTicks = 5;             // a division
constexpr int kLeastTickDistance = 4; // pixels
// Of 255. What is weaker is drawn first.
constexpr int kLineWeight = 105;
constexpr int kBorderWeight = 160;
constexpr int kAxisWeight = 255;

// One way through the grid.
struct Axis {
    int start;
    int length;    // pixels, at least 1
    int divisions; // even

    // The pixel of the line that is `index` of `count` steps away from the start; `count` is even.
    int place(int index, int count) const {
        const int mirrored = std::min(index, count - index);
        const int offset = static_cast<int>((std::int64_t{mirrored} * (length - 1) + count / 2) / count);
        return start + (index == mirrored ? offset : length - 1 - offset);
    }
    int middle() const { return place(1, 2); }
    int ticks() const {
        const auto fit = [this](int perDivision) { return length >= divisions * perDivision * kLeastTickDistance; };
        return divisions * (fit(kTicks) ? kTicks : fit(2) ? 2 : 1);
    }
};

int evenDivisions(int length, double division) {
    return std::max(2 * static_cast<int>(length / division / 2 + 0.5), 2);
}

class GridPen {
public:
    GridPen(const ImageView& picture, Colour colour)
        : picture_(picture), channels_{blueOf(colour), greenOf(colour), redOf(colour)} {}

    // Ends exclusive.
    void fill(int left, int top, int right, int bottom, int weight) const {
        for (int y = std::max(top, 0); y < std::min(bottom, picture_.height); ++y)
            for (int x = std::max(left, 0); x < std::min(right, picture_.width); ++x) {
                std::uint8_t* pixel = picture_.pixel(x, y);
                for (int c = 0; c < 3; ++c)
                    pixel[c] = static_cast<std::uint8_t>(blendChannel(pixel[c], channels_[c], weight));
            }
    }

private:
    ImageView picture_;
    int channels_[3];
};

} // namespace

void drawScaleGrid(const ImageView& picture, int left, int top, int right, int bottom, Colour colour) {
    if (left >= right || top >= bottom)
        return;
    const int shorter = std::min(right - left, bottom - top);
    const double division = std::max(shorter / double{kDivisions}, double{kLeastDivision});
    const Axis across{left, right - left, evenDivisions(right - left, division)};
    const Axis down{top, bottom - top, evenDivisions(bottom - top, division)};
    const GridPen pen(picture, colour);
    const auto upright = [&](int x, int weight) { pen.fill(x, top, x + 1, bottom, weight); };
    const auto level = [&](int y, int weight) { pen.fill(left, y, right, y + 1, weight); };
    for (int i = 1; i < across.divisions; ++i)
        upright(across.place(i, across.divisions), kLineWeight);
    for (int i = 1; i < down.divisions; ++i)
        level(down.place(i, down.divisions), kLineWeight);
    for (const int end : {0, 2}) {
        upright(across.place(end, 2), kBorderWeight);
        level(down.place(end, 2), kBorderWeight);
    }
    upright(across.middle(), kAxisWeight);
    level(down.middle(), kAxisWeight);
    const int tick = std::max(static_cast<int>(division / 10 + 0.5), 1);
    for (int i = 0; i <= across.ticks(); ++i) {
        const int x = across.place(i, across.ticks());
        pen.fill(x, down.middle() - tick, x + 1, down.middle() + tick + 1, kAxisWeight);
    }
    for (int i = 0; i <= down.ticks(); ++i) {
        const int y = down.place(i, down.ticks());
        pen.fill(across.middle() - tick, y, across.middle() + tick + 1, y + 1, kAxisWeight);
    }
}

} // namespace veldran
