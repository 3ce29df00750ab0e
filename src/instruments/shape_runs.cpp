// Finding runs, filling and copying them.
#include "instruments/shape_runs.h"

#include "render/blend.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace veldran {
namespace {

struct Columns {
    int first;
    int end;
};

// Where, across, a line has its middle when it passes a row.
double middleAt(CanvasPoint from, CanvasPoint to, int row) {
    const double along = std::clamp((row - from.y) / static_cast<double>(to.y - from.y), 0.0, 1.0);
    return from.x + along * (to.x - from.x);
}

// The columns of a row that are nearer than `reach` to the line, and some more; within `width` columns.
Columns columnsNear(CanvasPoint from, CanvasPoint to, int row, int reach, int width) {
    const bool level = from.y == to.y;
    const double a = level ? from.x : middleAt(from, to, row - reach);
    const double b = level ? to.x : middleAt(from, to, row + reach);
    return {std::max(static_cast<int>(std::min(a, b)) - reach, 0),
            std::min(static_cast<int>(std::max(a, b)) + reach + 1, width)};
}

// Adds the runs of a row's columns for which `covered(x)` is true.
template <class Covered>
void addRuns(std::vector<PixelRun>& runs, int y, Columns columns, Covered covered) {
    const auto narrow = [](int number) { return static_cast<std::uint16_t>(number); };
    for (int x = columns.first; x < columns.end; ++x) {
        const int start = x;
        while (x < columns.end && covered(x))
            ++x;
        if (x > start)
            runs.push_back({narrow(start), narrow(y), narrow(x - start)});
    }
}

// Runs that are not black.
void addCover(std::vector<PixelRun>& runs, const ConstImageView& image, int y, Columns columns) {
    addRuns(runs, y, columns, [&image, y](int x) { return *image.pixel(x, y) != 0; });
}

} // namespace

std::vector<PixelRun> coverOfLine(const ConstImageView& image, CanvasPoint from, CanvasPoint to, int width) {
    const int reach = width + 1; // twice what a line covers to each side
    const int top = std::max(std::min(from.y, to.y) - reach, 0);
    const int bottom = std::min(std::max(from.y, to.y) + reach + 1, image.height);
    std::vector<PixelRun> runs;
    for (int y = top; y < bottom; ++y)
        addCover(runs, image, y, columnsNear(from, to, y, reach, image.width));
    return runs;
}

std::vector<PixelRun> coverIn(const ConstImageView& image, const CanvasRect& box) {
    std::vector<PixelRun> runs;
    for (int y = std::max(box.top, 0); y < std::min(box.bottom, image.height); ++y)
        addCover(runs, image, y, {std::max(box.left, 0), std::min(box.right, image.width)});
    return runs;
}

std::vector<PixelRun> inkRuns(const ConstImageView& ink) {
    std::vector<PixelRun> runs;
    for (int y = 0; y < ink.height; ++y)
        addRuns(runs, y, {0, ink.width}, [&ink, y](int x) { return *colourBytes(ink, ink.pixel(x, y)) != 255; });
    return runs;
}

void blendInkRuns(const ImageView& picture, const ConstImageView& ink, std::span<const PixelRun> runs, CanvasPoint at,
                  Colour colour) {
    for (const PixelRun& run : runs)
        blendInk(picture, cropped(ink, run.x, run.y, run.x + run.length, run.y + 1), at.x + run.x, at.y + run.y,
                 colour);
}

void fillRuns(const ImageView& image, std::span<const PixelRun> runs, std::uint8_t grey) {
    for (const PixelRun& run : runs)
        std::memset(image.pixel(run.x, run.y), grey, 3 * std::size_t{run.length});
}

void layRuns(const ImageView& image, std::span<const PixelRun> runs, const ConstImageView& source, CanvasPoint corner) {
    for (const PixelRun& run : runs)
        std::memcpy(image.pixel(run.x, run.y), source.pixel(run.x - corner.x, run.y - corner.y),
                    3 * std::size_t{run.length});
}

} // namespace veldran
