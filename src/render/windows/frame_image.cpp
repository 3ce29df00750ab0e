// Locks blocks, hands views to the core, unlocks.
#include "render/windows/frame_image.h"

#include "render/blend.h"
#include "render/resample.h"

#include <cstring>
#include <new>

namespace veldran {

GlobalBlock createImage(int width, int height, int bits) {
    const std::optional<std::size_t> bytes = packedBitmapBytes(width, height, bits);
    if (!bytes)
        return {};
    GlobalBlock image = allocateGlobal(*bytes);
    const LockedBlock lock(image.get());
    if (!lock)
        return {};
    writeBitmapHeader(lock.bytes(), width, height, bits);
    return image;
}

LockedImage::LockedImage(HGLOBAL image) : lock_(image) {
    if (lock_)
        view_ = viewPackedBitmap(lock_.bytes());
}

GlobalBlock copyImage(HGLOBAL source) {
    const LockedBlock from(source);
    if (!from || from.bytes().empty())
        return {};
    GlobalBlock copy = allocateGlobal(from.bytes().size());
    const LockedBlock to(copy.get());
    if (!to)
        return {};
    std::memcpy(to.data(), from.data(), from.bytes().size());
    return copy;
}

GlobalBlock EmitFrame(HGLOBAL image, int percentX, int percentY) {
    const LockedImage source(image);
    if (!source || source.view().bits == 1)
        return {};
    return scaledImage(source.view(), percentX, percentY);
}

GlobalBlock scaledImage(const ConstImageView& source, int percentX, int percentY) try {
    GlobalBlock scaled = createImage(scaledLength(source.width, percentX), scaledLength(source.height, percentY),
                                     source.bits == 32 ? 32 : 24);
    const LockedImage target(scaled.get());
    if (!target)
        return {};
    resampleArea(source, target.view());
    return scaled;
} catch (const std::bad_alloc&) {
    return {};
}

GlobalBlock blankFrame(int width, int height) {
    GlobalBlock frame = createImage(width, height, 24);
    const LockedImage image(frame.get());
    if (!image)
        return {};
    for (int y = 0; y < height; ++y)
        std::memset(image.view().row(y), 0xFF, static_cast<std::size_t>(width) * 3);
    return frame;
}

GlobalBlock mergeAlpha(HGLOBAL colourImage, HGLOBAL alphaImage) {
    const LockedImage colours(colourImage);
    const LockedImage alpha(alphaImage);
    if (!colours || !alpha || colours.view().bits == 1 || alpha.view().bits == 1)
        return {};
    GlobalBlock merged = createImage(colours.view().width, colours.view().height, 32);
    const LockedImage target(merged.get());
    if (!target)
        return {};
    mergeAlphaPixels(colours.view(), alpha.view(), target.view());
    return merged;
}

} // namespace veldran
