// A tuning indicator tube, seen from its end: a fluorescent cone around a dark cap, and on the cone a shadow that
// closes as the level rises. Painted once in the dark, lit and doubly lit; a frame mixes them where the shadow can be.
// Core: knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "render/colour.h"
#include "render/painted_shapes.h"
#include "render/stored_picture.h"

#include <vector>

namespace veldran {

inline constexpr int kEyeStill[] = {150, 105}; // levels that show a tube well, on the first display and the second

struct EyeLook {
    Colour glow;  // of the fluorescent cone
    Colour panel; // around the bezel
    Edges edges;
};

class EyeTube {
public:
    // `diameter` is that of the bezel in pixels, at least 16; it fills the square. Throws std::bad_alloc.
    EyeTube(int diameter, const EyeLook& look);

    // Draws the tube, lit all around, with the top left pixel of its square at `at` of `picture` (24 bits).
    void drawLit(const ImageView& picture, CanvasPoint at) const;
    // Draws what the level, 0 to 255, changes over a tube that drawLit has drawn there. All of the tube lies on the
    // picture. Even steps of the level are even steps of the shadow's angle.
    void drawShadow(const ImageView& picture, CanvasPoint at, int level) const;

    // Fills the square at `at` with white within the bezel's outline, black around it.
    void drawOutline(const ImageView& mask, CanvasPoint at) const;

private:
    // A pixel that is not as bright at every level.
    struct MovingPixel {
        int x;
        int y;
        float angle;     // from the shadow's middle, in radians; counter-clockwise is negative
        float sharpness; // how quickly light rises across the shadow's edge: by half from its middle to 1 / sharpness
    };

    void paintPhosphor(const ImageView& picture, double light) const;
    void paintCap(const ImageView& picture, double light) const;
    void paintReflex(const ImageView& picture) const;
    void findMovingPixels();

    int diameter_;
    EyeLook look_;
    StoredPicture dark_;
    StoredPicture lit_;
    StoredPicture doubled_; // where light falls twice
    std::vector<MovingPixel> moving_;
};

} // namespace veldran
