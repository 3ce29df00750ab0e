// Row loops over two or three images.
#include "render/blend.h"

#include <algorithm>

namespace veldran {
namespace {

// A colour's channels in the order in which pixels store them.
struct ChannelBytes {
    int value[3];
    explicit ChannelBytes(Colour colour) : value{blueOf(colour), greenOf(colour), redOf(colour)} {}
};

void blendPixel(std::uint8_t* pixel, const ChannelBytes& colour, int weight) {
    for (int c = 0; c < 3; ++c)
        pixel[c] = static_cast<std::uint8_t>(blendChannel(pixel[c], colour.value[c], weight));
}

} // namespace

void blendColourThroughMask(const ImageView& picture, const ConstImageView& mask, Colour colour) {
    const ChannelBytes channels(colour);
    const int width = std::min(picture.width, mask.width);
    const int height = std::min(picture.height, mask.height);
    for (int y = 0; y < height; ++y) {
        std::uint8_t* pixel = picture.row(y);
        const std::uint8_t* weight = mask.row(y);
        for (int x = 0; x < width; ++x, pixel += 3, weight += 3)
            blendPixel(pixel, channels, *weight);
    }
}

void blendInk(const ImageView& picture, const ConstImageView& ink, int left, int top, Colour colour) {
    const ChannelBytes channels(colour);
    const int firstX = std::max(0, -left);
    const int endX = std::min(ink.width, picture.width - left);
    const int firstY = std::max(0, -top);
    const int endY = std::min(ink.height, picture.height - top);
    for (int y = firstY; y < endY; ++y) {
        const std::uint8_t* source = ink.pixel(firstX, y);
        std::uint8_t* pixel = picture.pixel(left + firstX, top + y);
        for (int x = firstX; x < endX; ++x, source += ink.bytesPerPixel(), pixel += 3)
            blendPixel(pixel, channels, 255 - *colourBytes(ink, source));
    }
}

void mergeAlphaPixels(const ConstImageView& colours, const ConstImageView& alpha, const ImageView& target) {
    for (int y = 0; y < target.height; ++y) {
        std::uint8_t* out = target.row(y);
        for (int x = 0; x < target.width; ++x, out += 4) {
            const std::uint8_t* colour = colourBytes(colours, colours.pixel(x, y));
            std::copy_n(colour, 3, out);
            out[3] = alpha.contains(x, y) ? *colourBytes(alpha, alpha.pixel(x, y)) : std::uint8_t{0};
        }
    }
}

void blendOverCheckerboard(const ConstImageView& picture, const ImageView& target) {
    constexpr int kSquare = 8; // pixels
    constexpr int kLight = 255;
    constexpr int kDark = 204;
    for (int y = 0; y < target.height; ++y) {
        const std::uint8_t* pixel = picture.row(y);
        std::uint8_t* out = target.row(y);
        for (int x = 0; x < target.width; ++x, pixel += 4, out += 3)
            for (int c = 0; c < 3; ++c)
                out[c] = static_cast<std::uint8_t>(
                    blendChannel((x / kSquare + y / kSquare) % 2 == 0 ? kLight : kDark, pixel[c], pixel[3]));
    }
}

} // namespace veldran
