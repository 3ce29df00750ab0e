// Row loops over what two images have in common.
#include "render/layers.h"

#include <algorithm>
#include <cstring>

namespace veldran {
void layImage(const ImageView& picture, const ConstImageView& upper, int left, int top) {
    forSharedRows(picture, upper, left, top, [](const std::uint8_t* source, std::uint8_t* pixel, int pixels) {
        std::memcpy(pixel, source, static_cast<std::size_t>(pixels) * 3);
    });
}

void keepInWindow(const ImageView& picture, const ConstImageView& under, const ConstImageView& window) {
    forSharedRows(picture, under, 0, 0, [&, y = 0](const std::uint8_t* plain, std::uint8_t* out, int pixels) mutable {
        if (y >= window.height)
            return;
        const std::uint8_t* weight = window.row(y++);
        for (int x = 0; x < std::min(pixels, window.width); ++x, weight += window.bytesPerPixel())
            if (const int seen = *colourBytes(window, weight); seen < 255)
                for (int c = 3 * x; c < 3 * x + 3; ++c)
                    out[c] = static_cast<std::uint8_t>(divideBy255(out[c] * seen + plain[c] * (255 - seen)));
    });
}

void layIndices(const ImageView& picture, const ConstImageView& upper, int left, int top, const IndexColours& colours) {
    forSharedRows(picture, upper, left, top, [&colours](const std::uint8_t* index, std::uint8_t* pixel, int pixels) {
        for (const std::uint8_t* end = index + pixels; index < end; ++index, pixel += 3) {
            const Colour colour = colours[*index];
            if (colour == kNoColour)
                continue;
            pixel[0] = static_cast<std::uint8_t>(blueOf(colour));
            pixel[1] = static_cast<std::uint8_t>(greenOf(colour));
            pixel[2] = static_cast<std::uint8_t>(redOf(colour));
        }
    });
}

void layShadow(const ImageView& picture, const ConstImageView& mask, int left, int top, const ShadowFactors& factors) {
    forSharedRows(picture, mask, left, top, [&factors](const std::uint8_t* shade, std::uint8_t* pixel, int pixels) {
        for (const std::uint8_t* end = shade + 3 * pixels; shade < end; shade += 3, pixel += 3) {
            const int factor = factors[*shade];
            for (int c = 0; c < 3; ++c)
                pixel[c] = static_cast<std::uint8_t>(divideBy255(pixel[c] * factor));
        }
    });
}

void invertImage(const ImageView& image) {
    for (int y = 0; y < image.height; ++y)
        std::transform(image.row(y), image.row(y) + 3 * image.width, image.row(y),
                       [](std::uint8_t byte) { return static_cast<std::uint8_t>(255 - byte); });
}

} // namespace veldran
