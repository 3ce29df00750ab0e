// Where a picture lies in a view: zoom steps, fitting, scrolling. All lengths are pixels of the screen, all zooms whole
// per cent of the picture's own size.
#pragma once

#include <cstddef>

namespace stage {

struct ViewPoint {
    int x = 0;
    int y = 0;
    bool operator==(const ViewPoint&) const = default;
};

struct ViewSize {
    int width = 0;
    int height = 0;
    bool operator==(const ViewSize&) const = default;
};

struct ViewBox {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const ViewBox&) const = default;
};

inline constexpr int kSmallestZoom = 5;
inline constexpr int kLargestZoom = 1600;

// The next common zoom above or below; the largest or smallest when there is none.
int zoomAbove(int percent);
int zoomBelow(int percent);

// The largest zoom at which the whole picture is seen, within the limits above.
int zoomToFit(const ViewSize& picture, const ViewSize& view);

// The size of the zoomed picture, at least one pixel a side.
ViewSize zoomed(const ViewSize& picture, int percent);

// How far the view can be scrolled each way: 0 where all is seen.
ViewSize scrollRange(const ViewSize& content, const ViewSize& view);
ViewPoint clampedScroll(const ViewPoint& scroll, const ViewSize& content, const ViewSize& view);

// The place of the content: in the middle where it is smaller than the view, else moved by the scrolling.
ViewBox placedInView(const ViewSize& content, const ViewSize& view, const ViewPoint& scroll);

// The scrolling after which what lay at `anchor` of the view still lies there, when the content has grown from `before`
// to `after`.
ViewPoint scrollAfterZoom(const ViewPoint& anchor, const ViewBox& before, const ViewSize& after, const ViewSize& view);

// A row of cells of equal width, one for each frame, scrolled sideways.
struct StripLayout {
    int cellWidth = 1; // at least 1
    std::size_t cells = 0;
    int viewWidth = 0;
    int scroll = 0;

    int contentWidth() const;
    int largestScroll() const;
    int left(std::size_t cell) const; // in the view
    // The cells of which something is seen: from the first to one behind the last.
    std::size_t firstSeen() const;
    std::size_t endSeen() const;
    // The cell at that place of the view; `cells` when there is none.
    std::size_t cellAt(int x) const;
    // The least change of scrolling after which the cell, and where there is room its neighbours, is seen.
    int scrollToShow(std::size_t cell) const;
};

} // namespace stage
