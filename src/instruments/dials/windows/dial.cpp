// The still picture of a dial and the alpha of its outline.
#include "instruments/dials/windows/dial.h"

#include "render/windows/frame_image.h"
#include "render/windows/shapes.h"

namespace veldran {

Dial::Dial(const ConstImageView& face, const ArtworkGeometry& geometry, Colour background)
    : geometry_(geometry), still_(geometry.width, geometry.height), picture_(geometry.width, geometry.height) {
    if (!*this)
        return;
    fillRectangle(still_.dc(), still_.bounds(), background);
    layImage(still_.pixels(), face, geometry.pad, geometry.pad);
}

GlobalBlock cutOutAlpha(const ConstImageView& mask, const ArtworkGeometry& geometry) {
    GlobalBlock alpha = createImage(geometry.width, geometry.height, 24);
    {
        const LockedImage image(alpha.get());
        if (!image)
            return {};
        blendInk(image.view(), mask, geometry.pad, geometry.pad, makeColour(255, 255, 255));
    }
    return reducedOrUnchanged(std::move(alpha), geometry.percent);
}

} // namespace veldran
