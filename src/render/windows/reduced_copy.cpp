// The reduction, or a plain copy.
#include "render/windows/reduced_copy.h"

#include "render/layers.h"
#include "render/windows/frame_image.h"

namespace veldran {
namespace {

GlobalBlock plainCopy(const ConstImageView& picture) {
    GlobalBlock copy = createImage(picture.width, picture.height, picture.bits);
    const LockedImage image(copy.get());
    if (!image)
        return {};
    layImage(image.view(), picture, 0, 0);
    return copy;
}

} // namespace

GlobalBlock reducedCopy(const ConstImageView& picture, int percent) {
    GlobalBlock copy = percent == 100 ? GlobalBlock() : scaledImage(picture, percent, percent);
    return copy ? std::move(copy) : plainCopy(picture);
}

} // namespace veldran
