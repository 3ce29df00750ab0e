// Pictures as they are shown on the screen: zoomed, with something behind their transparency.
// Never changes the pictures themselves, and never touches a pixel outside the target.
#pragma once

#include "document/picture.h"
#include "view/view_geometry.h"

#include <span>

namespace stage {

enum class BackdropKind { Checkerboard, White, Black, Colour };

struct Backdrop {
    BackdropKind kind = BackdropKind::Checkerboard;
    Rgb colour{};   // of BackdropKind::Colour
    int square = 8; // side of the checkerboard's squares in pixels of the screen
};

// Pixels as a bitmap of 32 bits has them: blue in the lowest byte, then green, red, unused. Rows top-down, without
// padding.
struct ScreenTarget {
    std::span<std::uint32_t> pixels;
    int width = 0;
    int height = 0;
};

// Fills `place`, as far as it lies inside the target, with the whole picture. Enlarged pixels stay sharp squares; a
// picture that is made smaller is averaged, so that thin lines do not get lost.
void drawPicture(const Picture& picture, const ViewBox& place, const Backdrop& backdrop, const ScreenTarget& target);

// The picture at another size, averaged or with sharp squares in the same way.
Picture resizedPicture(const Picture& picture, int width, int height);

} // namespace stage
