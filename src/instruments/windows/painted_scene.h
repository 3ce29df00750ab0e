// Pictures whose scenery is painted once and then copied for each frame.
#pragma once

#include "base/windows/global_block.h"
#include "render/painted_shapes.h"
#include "render/windows/frame_image.h"

namespace veldran {

// What "&Antialias" says.
Edges readEdges(HWND dialog);

// An image of 24 bits, filled with `ground` and painted by `paint(const ImageView&)`; empty when memory is exhausted.
template <class PaintOn>
GlobalBlock paintedImage(int width, int height, Colour ground, PaintOn paint) {
    GlobalBlock picture = createImage(width, height, 24);
    const LockedImage image(picture.get());
    if (!image)
        return {};
    const ShapeBox all{0, 0, double(width), double(height)};
    paintBox(image.view(), all, 0, Edges::Hard, [ground](double, double) { return Paint{ground}; });
    paint(image.view());
    return picture;
}

// A copy of `scenery` that `draw(const ImageView&)` has worked on; empty when memory is exhausted or there is no
// scenery.
template <class DrawOn>
GlobalBlock drawnCopy(const GlobalBlock& scenery, DrawOn draw) {
    GlobalBlock picture = copyImage(scenery.get());
    const LockedImage image(picture.get());
    if (!image)
        return {};
    draw(image.view());
    return picture;
}

} // namespace veldran
