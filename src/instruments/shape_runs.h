// What shapes cover, kept as runs of pixels, so that a shape that comes again in frame after frame is drawn once and
// then only filled or copied. Core: knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "render/colour.h"
#include "render/image_view.h"

#include <cstdint>
#include <span>
#include <vector>

namespace veldran {

// Neighbours in a row of a picture.
struct PixelRun {
    std::uint16_t x;
    std::uint16_t y;
    std::uint16_t length;
    bool operator==(const PixelRun&) const = default;
};

// The runs of pixels that are not black in an image (24 bits) on which one thing was drawn in white on black: a line of
// `width` pixels, or what lies in a box. A row may have several: where its ends join it, a wide line has notches.
std::vector<PixelRun> coverOfLine(const ConstImageView& image, CanvasPoint from, CanvasPoint to, int width);
std::vector<PixelRun> coverIn(const ConstImageView& image, const CanvasRect& box);

// The runs of an image of ink that are not paper, that is, white; and blendInk with nothing but these, the image's top
// left pixel standing at `at` of the picture. Most of a sheet of ink is paper.
std::vector<PixelRun> inkRuns(const ConstImageView& ink);
void blendInkRuns(const ImageView& picture, const ConstImageView& ink, std::span<const PixelRun> runs, CanvasPoint at,
                  Colour colour);

// Makes runs of an image (24 bits) grey. They lie within it.
void fillRuns(const ImageView& image, std::span<const PixelRun> runs, std::uint8_t grey);

// Copies runs to an image from a `source` whose top left pixel stands at `corner` of it; both have 24 bits and hold
// the runs.
void layRuns(const ImageView& image, std::span<const PixelRun> runs, const ConstImageView& source, CanvasPoint corner);

} // namespace veldran
