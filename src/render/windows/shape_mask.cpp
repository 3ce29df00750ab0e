// White shapes on black canvases.
#include "render/windows/shape_mask.h"

#include "base/windows/gdi.h"
#include "render/windows/canvas.h"
#include "render/windows/frame_image.h"

#include <algorithm>

namespace veldran {
namespace {

template <class DrawShape>
GlobalBlock drawMask(int width, int height, int percent, DrawShape drawShape) {
    ScopedCanvas canvas(width, height);
    if (!canvas)
        return {};
    FillRect(canvas.dc(), &canvas.bounds(), static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    {
        const Selected brush(canvas.dc(), GetStockObject(WHITE_BRUSH));
        const Selected pen(canvas.dc(), GetStockObject(NULL_PEN));
        drawShape(canvas.dc(), canvas.bounds());
    }
    return reducedOrUnchanged(canvas.finish(), percent);
}

// A scale below 1 leaves no canvas to reduce.
int percentOf(int scale) {
    return 100 / std::max(scale, 1);
}

} // namespace

GlobalBlock ellipseMaskReduced(int width, int height, const RECT& box, int percent) {
    return drawMask(width, height, percent,
                    [&box](HDC dc, const RECT&) { Ellipse(dc, box.left, box.top, box.right, box.bottom); });
}

GlobalBlock ellipseMask(int width, int height, const RECT& box, int scale) {
    return ellipseMaskReduced(scale * width, scale * height, box, percentOf(scale));
}

GlobalBlock roundedRectangleMask(int width, int height, int cornerWidth, int cornerHeight, int scale) {
    return drawMask(scale * width, scale * height, percentOf(scale), [=](HDC dc, const RECT& bounds) {
        RoundRect(dc, bounds.left, bounds.top, bounds.right, bounds.bottom, scale * cornerWidth, scale * cornerHeight);
    });
}

GlobalBlock bezelMask(int width, int height, const BezelShape& shape) {
    GlobalBlock mask = createImage(width, height, 24);
    const LockedImage image(mask.get());
    if (!image)
        return {};
    drawBezelMask(image.view(), shape);
    return mask;
}

GlobalBlock reducedOrUnchanged(GlobalBlock picture, int percent) {
    if (percent == 100)
        return picture;
    GlobalBlock reduced = EmitFrame(picture.get(), percent, percent);
    return reduced ? std::move(reduced) : std::move(picture);
}

} // namespace veldran
