// The reduction, or a plain copy.
#include "render/reduced_copy.h"

#include "render/frame_image.h"
#include "render/layers.h"
#include "render/resample.h"

#include <new>

namespace veldran {
namespace {

GlobalBlock scaledCopy(const ConstImageView& picture, int percent) try {
    GlobalBlock copy =
        createImage(scaledLength(picture.width, percent), scaledLength(picture.height, percent), picture.bits);
    const LockedImage image(copy.get());
    if (!image)
        return {};
    resampleArea(picture, image.view());
    return copy;
} catch (const std::bad_alloc&) {
    return {};
}

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
    GlobalBlock copy = percent == 100 ? GlobalBlock() : scaledCopy(picture, percent);
    return copy ? std::move(copy) : plainCopy(picture);
}

} // namespace veldran
