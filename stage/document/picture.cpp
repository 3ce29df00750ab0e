// Conversions and comparisons of pictures; see the header.
#include "document/picture.h"

#include <algorithm>
#include <array>

namespace stage {
namespace {

std::array<Pixel, 256> pixelsOf(const Frame& frame) {
    std::array<Pixel, 256> colours;
    std::ranges::transform(frame.palette, colours.begin(), [](Rgb colour) { return pixelOf(colour); });
    if (frame.transparentIndex)
        colours[*frame.transparentIndex] = kTransparentPixel;
    return colours;
}

} // namespace

Picture pictureOf(const Frame& frame) {
    Picture picture{frame.width, frame.height, std::vector<Pixel>(std::size_t{frame.width} * frame.height)};
    const std::uint8_t* from = frame.pixels.data();
    if (frame.format == PixelFormat::Indexed) {
        const std::array<Pixel, 256> colours = pixelsOf(frame);
        for (Pixel& pixel : picture.pixels)
            pixel = colours[*from++];
        return picture;
    }
    const std::size_t step = bytesPerPixel(frame.format);
    for (Pixel& pixel : picture.pixels) {
        pixel = pixelOf({from[0], from[1], from[2]}, step == 4 ? from[3] : 255u);
        from += step;
    }
    return picture;
}

Frame frameOf(const Picture& picture) {
    Frame frame;
    frame.width = picture.width;
    frame.height = picture.height;
    const bool opaque = std::ranges::all_of(picture.pixels, [](Pixel pixel) { return opacityOf(pixel) == 255; });
    frame.format = opaque ? PixelFormat::Rgb : PixelFormat::Rgba;
    frame.pixels.reserve(frame.rowBytes() * frame.height);
    for (const Pixel pixel : picture.pixels) {
        const Rgb colour = rgbOf(pixel);
        frame.pixels.insert(frame.pixels.end(), {colour.red, colour.green, colour.blue});
        if (!opaque)
            frame.pixels.push_back(opacityOf(pixel));
    }
    return frame;
}

Picture enlarged(const Picture& picture, std::uint32_t width, std::uint32_t height) {
    Picture larger{width, height, std::vector<Pixel>(std::size_t{width} * height, kTransparentPixel)};
    for (std::size_t y = 0; y < picture.height; ++y)
        std::copy_n(picture.pixels.begin() + static_cast<std::ptrdiff_t>(y * picture.width), picture.width,
                    larger.pixels.begin() + static_cast<std::ptrdiff_t>(y * width));
    return larger;
}

Area changedArea(const Picture& before, const Picture& after) {
    std::uint32_t left = after.width;
    std::uint32_t right = 0;
    std::uint32_t top = after.height;
    std::uint32_t bottom = 0;
    for (std::uint32_t y = 0; y < after.height; ++y) {
        const Pixel* a = before.pixels.data() + std::size_t{y} * after.width;
        const Pixel* b = after.pixels.data() + std::size_t{y} * after.width;
        if (std::equal(a, a + after.width, b))
            continue;
        top = std::min(top, y);
        bottom = y + 1;
        const auto first = static_cast<std::uint32_t>(std::mismatch(a, a + after.width, b).first - a);
        std::uint32_t last = after.width;
        while (a[last - 1] == b[last - 1])
            --last;
        left = std::min(left, first);
        right = std::max(right, last);
    }
    return bottom == 0 ? Area{} : Area{left, top, right - left, bottom - top};
}

Area unitedArea(const Area& a, const Area& b) {
    if (a.width == 0 || b.width == 0)
        return a.width == 0 ? b : a;
    const std::uint32_t left = std::min(a.x, b.x);
    const std::uint32_t top = std::min(a.y, b.y);
    return {left, top, std::max(a.x + a.width, b.x + b.width) - left, std::max(a.y + a.height, b.y + b.height) - top};
}

Picture cutOut(const Picture& picture, const Area& area) {
    Picture part{area.width, area.height, {}};
    part.pixels.reserve(std::size_t{area.width} * area.height);
    for (std::uint32_t y = area.y; y < area.y + area.height; ++y) {
        const Pixel* row = picture.pixels.data() + std::size_t{y} * picture.width + area.x;
        part.pixels.insert(part.pixels.end(), row, row + area.width);
    }
    return part;
}

void fill(Picture& picture, const Area& area, Pixel pixel) {
    for (std::uint32_t y = area.y; y < area.y + area.height; ++y)
        std::fill_n(picture.pixels.begin() + static_cast<std::ptrdiff_t>(std::size_t{y} * picture.width + area.x),
                    area.width, pixel);
}

} // namespace stage
