// Zoom, scrolling and the strip; see the header.
#include "view/view_geometry.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace stage {
namespace {

constexpr std::array kZooms = {kSmallestZoom, 10,  15,  25,  33,  50,  67,  75,   100,
                               125,           150, 200, 300, 400, 600, 800, 1200, kLargestZoom};

int fitting(int picture, int view) {
    return static_cast<int>(std::int64_t{view} * 100 / std::max(picture, 1));
}

int zoomedSide(int side, int percent) {
    const std::int64_t length = (std::int64_t{side} * percent + 50) / 100;
    return static_cast<int>(std::clamp<std::int64_t>(length, 1, std::numeric_limits<int>::max()));
}

int placedSide(int content, int view, int scroll) {
    return content <= view ? (view - content) / 2 : -scroll;
}

// Where a point of the content comes to lie, measured from the content's beginning.
int grown(int place, int before, int after) {
    return static_cast<int>(std::int64_t{place} * after / std::max(before, 1));
}

} // namespace

int zoomAbove(int percent) {
    const auto above = std::ranges::upper_bound(kZooms, percent);
    return above == kZooms.end() ? kLargestZoom : *above;
}

int zoomBelow(int percent) {
    const auto notBelow = std::ranges::lower_bound(kZooms, percent);
    return notBelow == kZooms.begin() ? kSmallestZoom : *(notBelow - 1);
}

int zoomToFit(const ViewSize& picture, const ViewSize& view) {
    return std::clamp(std::min(fitting(picture.width, view.width), fitting(picture.height, view.height)), kSmallestZoom,
                      kLargestZoom);
}

ViewSize zoomed(const ViewSize& picture, int percent) {
    return {zoomedSide(picture.width, percent), zoomedSide(picture.height, percent)};
}

ViewSize scrollRange(const ViewSize& content, const ViewSize& view) {
    return {std::max(content.width - view.width, 0), std::max(content.height - view.height, 0)};
}

ViewPoint clampedScroll(const ViewPoint& scroll, const ViewSize& content, const ViewSize& view) {
    const ViewSize range = scrollRange(content, view);
    return {std::clamp(scroll.x, 0, range.width), std::clamp(scroll.y, 0, range.height)};
}

ViewBox placedInView(const ViewSize& content, const ViewSize& view, const ViewPoint& scroll) {
    return {placedSide(content.width, view.width, scroll.x), placedSide(content.height, view.height, scroll.y),
            content.width, content.height};
}

ViewPoint scrollAfterZoom(const ViewPoint& anchor, const ViewBox& before, const ViewSize& after, const ViewSize& view) {
    const ViewPoint scroll{grown(anchor.x - before.left, before.width, after.width) - anchor.x,
                           grown(anchor.y - before.top, before.height, after.height) - anchor.y};
    return clampedScroll(scroll, after, view);
}

int StripLayout::contentWidth() const {
    const auto most = static_cast<std::size_t>(std::numeric_limits<int>::max() / cellWidth);
    return static_cast<int>(std::min(cells, most)) * cellWidth;
}

int StripLayout::largestScroll() const {
    return std::max(contentWidth() - viewWidth, 0);
}

int StripLayout::left(std::size_t cell) const {
    return static_cast<int>(cell) * cellWidth - scroll;
}

std::size_t StripLayout::firstSeen() const {
    return std::min(static_cast<std::size_t>(std::max(scroll, 0) / cellWidth), cells);
}

std::size_t StripLayout::endSeen() const {
    return std::min(static_cast<std::size_t>((scroll + viewWidth + cellWidth - 1) / cellWidth), cells);
}

std::size_t StripLayout::cellAt(int x) const {
    return x + scroll < 0 ? cells : std::min(static_cast<std::size_t>((x + scroll) / cellWidth), cells);
}

int StripLayout::scrollToShow(std::size_t cell) const {
    const int margin = viewWidth >= 3 * cellWidth ? cellWidth : 0;
    const int begin = static_cast<int>(cell) * cellWidth - margin;
    const int end = static_cast<int>(cell + 1) * cellWidth + margin;
    const int moved = begin < scroll ? begin : end > scroll + viewWidth ? end - viewWidth : scroll;
    return std::clamp(moved, 0, largestScroll());
}

} // namespace stage
