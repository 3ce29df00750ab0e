// Frames around a screen, as of moulded or machined metal, lit from the top left, and the masks of their outlines.
// Core: knows no windows.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

#include <cstdint>
#include <vector>

namespace veldran {

enum class BezelStyle : std::uint8_t { Rectangle, Round, RoundedRectangle };

// The outline touches the picture's four sides. Corners of RoundedRectangle are arcs of 1.75 times the frame.
struct BezelShape {
    BezelStyle style = BezelStyle::Rectangle;
    int width = 0; // of the frame's left and right side, in pixels; below 0 counts as 0, above half the picture as half
    int height = 0; // of its top and bottom
};

// A frame for pictures of one size, worked out once and drawn on any number of them.
class Bezel {
public:
    // `base` is the colour of its material under even light, `outside` that of the picture beyond the outline. Both
    // sides of the picture are at least 1. Throws std::bad_alloc.
    Bezel(int pictureWidth, int pictureHeight, const BezelShape& shape, Colour base, Colour outside);

    // Lays frame and outside over `picture` (24 bits, the size given before) and leaves what lies within the frame as
    // it is. The inner edge is smooth: pixels on it are blended with the picture's.
    void draw(const ImageView& picture) const;

private:
    // A run of pixels of one row that the frame touches.
    struct Span {
        int x;
        int y;
        int length;
    };
    struct Pixel {
        std::uint8_t channels[3]; // as pixels store them
        std::uint8_t cover;       // 255 hides the picture
    };
    std::vector<Span> spans_;
    std::vector<Pixel> pixels_; // those of all spans, one behind the other
};

// Fills `mask` (24 bits) with white within the outline that such a bezel has on a picture of that size, black outside,
// grey on its edge.
void drawBezelMask(const ImageView& mask, const BezelShape& shape);

} // namespace veldran
