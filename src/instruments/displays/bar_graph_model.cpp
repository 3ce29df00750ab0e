// Bar graph: numbers only.
#include "instruments/displays/bar_graph_model.h"

#include <algorithm>

namespace veldran {
namespace {

constexpr int kNarrowestPitch = 4; // pixels
constexpr int kWidestPitch = 32;

} // namespace

BarGraphGeometry barGraphGeometry(const BarGraphParameters& p) {
    const int around = p.border + p.pad;
    BarGraphGeometry g{};
    g.width = p.width + 2 * around;
    g.height = p.depth + 2 * around;
    const CanvasRect all{0, 0, g.width, g.height};
    g.padded = insetBy(all, p.border);
    g.bar = insetBy(all, around);
    g.radius = std::min(g.width, g.height) / 2.0 * p.roundness / 100;
    return g;
}

std::vector<BarSegment> barSegments(int width, int depth) {
    const int pitch = std::max(std::min({depth / 2 + 1, kWidestPitch, width / 4}), kNarrowestPitch);
    const int gap = pitch / 4;
    const int count = std::max((width + gap) / pitch, 1);
    std::vector<BarSegment> segments;
    segments.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        segments.push_back({i * (width + gap) / count, (i + 1) * (width + gap) / count - gap});
    return segments;
}

double filledColumns(const BarGraphParameters& p, const std::vector<BarSegment>& segments, int frame) {
    const int last = std::max(p.frames - 1, 1);
    if (p.type != BarType::Segments)
        return static_cast<double>(p.width) * frame / last;
    const auto count = static_cast<std::int64_t>(segments.size());
    const std::int64_t lit = (2 * count * frame + last) / (2 * last);
    return lit == 0 ? 0 : segments[static_cast<std::size_t>(lit - 1)].right;
}

CanvasRect partShapedLike(int imageWidth, int imageHeight, int width, int depth) {
    const std::int64_t wanted = std::int64_t{imageHeight} * width;
    const std::int64_t there = std::int64_t{imageWidth} * depth;
    int partWidth = imageWidth;
    int partHeight = imageHeight;
    if (there > wanted)
        partWidth = std::max(static_cast<int>((wanted + depth / 2) / depth), 1);
    else
        partHeight = std::max(static_cast<int>((there + width / 2) / width), 1);
    return rectAt({(imageWidth - partWidth) / 2, (imageHeight - partHeight) / 2}, partWidth, partHeight);
}

} // namespace veldran
