// Dials: artwork over which hands move. What stands still is drawn once, and every frame begins with it. Never knows an
// instrument.
#pragma once

#include "instruments/artwork_geometry.h"
#include "render/blend.h"
#include "render/layers.h"
#include "render/windows/canvas.h"
#include "render/windows/reduced_copy.h"
#include "render/windows/shape_mask.h"

namespace veldran {

class Dial {
public:
    // A canvas of `background` with `face` (24 bits) on it, at the geometry's margin.
    Dial(const ConstImageView& face, const ArtworkGeometry& geometry, Colour background);

    // False when memory is exhausted; frames are empty then, and nothing may be drawn.
    explicit operator bool() const { return still_ && picture_; }

    // To finish with what else stands still: text, and the outline. Hands must end where the outline leaves the face
    // as it is; so it does not matter that they are drawn after it.
    HDC dc() const { return still_.dc(); }
    ImageView pixels() const { return still_.pixels(); }

    // A frame, reduced. `drawHands` is called with the context to draw on. Empty when memory is exhausted.
    template <class DrawHands>
    GlobalBlock renderFrame(DrawHands drawHands) const {
        if (!*this)
            return {};
        layImage(picture_.pixels(), still_.pixels(), 0, 0);
        drawHands(picture_.dc());
        return reducedCopy(picture_.pixels(), geometry_.percent);
    }

private:
    ArtworkGeometry geometry_;
    ScopedCanvas still_;
    ScopedCanvas picture_; // the frame that is being drawn
};

// The alpha of frames that are cut out with `mask` (24 bits, black within the outline): white within the outline, black
// around it, reduced as the frames are. Empty when memory is exhausted.
GlobalBlock cutOutAlpha(const ConstImageView& mask, const ArtworkGeometry& geometry);

} // namespace veldran
