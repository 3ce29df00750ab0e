// Zooming and laying over the backdrop; see the header.
#include "view/screen_picture.h"

#include <algorithm>

namespace stage {
namespace {

constexpr Rgb kLightSquare{255, 255, 255};
constexpr Rgb kDarkSquare{204, 204, 204};

struct Range {
    std::uint32_t begin = 0;
    std::uint32_t end = 0; // one behind the last
};

// The source pixels that each target pixel from `first` to before `end` shows.
std::vector<Range> rangesOf(int first, int end, int targetLength, std::uint32_t sourceLength) {
    std::vector<Range> ranges;
    ranges.reserve(static_cast<std::size_t>(std::max(end - first, 0)));
    const auto source = std::int64_t{sourceLength};
    for (std::int64_t i = first; i < end; ++i) {
        Range range;
        if (targetLength >= source) { // what lies at the middle of the pixel
            range.begin = static_cast<std::uint32_t>((2 * i + 1) * source / (2 * std::int64_t{targetLength}));
            range.end = range.begin + 1;
        } else {
            range.begin = static_cast<std::uint32_t>(i * source / targetLength);
            range.end = static_cast<std::uint32_t>(((i + 1) * source + targetLength - 1) / targetLength);
        }
        ranges.push_back(range);
    }
    return ranges;
}

// The mean of a block; colours count by their opacity.
Pixel meanOf(const Picture& picture, const Range& columns, const Range& rows) {
    std::uint64_t red = 0, green = 0, blue = 0, opacity = 0;
    for (std::uint32_t y = rows.begin; y < rows.end; ++y) {
        const Pixel* row = picture.pixels.data() + std::size_t{y} * picture.width;
        for (std::uint32_t x = columns.begin; x < columns.end; ++x) {
            const std::uint64_t weight = opacityOf(row[x]);
            const Rgb colour = rgbOf(row[x]);
            red += colour.red * weight;
            green += colour.green * weight;
            blue += colour.blue * weight;
            opacity += weight;
        }
    }
    if (opacity == 0)
        return kTransparentPixel;
    const auto mean = [opacity](std::uint64_t sum) { return static_cast<std::uint8_t>((sum + opacity / 2) / opacity); };
    const std::uint64_t count = std::uint64_t{columns.end - columns.begin} * (rows.end - rows.begin);
    return pixelOf({mean(red), mean(green), mean(blue)}, static_cast<std::uint32_t>((opacity + count / 2) / count));
}

Pixel sampled(const Picture& picture, const Range& columns, const Range& rows) {
    const bool isOne = columns.end - columns.begin == 1 && rows.end - rows.begin == 1;
    return isOne ? picture.pixels[std::size_t{rows.begin} * picture.width + columns.begin]
                 : meanOf(picture, columns, rows);
}

Rgb behind(const Backdrop& backdrop, int x, int y) {
    switch (backdrop.kind) {
    case BackdropKind::White:
        return {255, 255, 255};
    case BackdropKind::Black:
        return {0, 0, 0};
    case BackdropKind::Colour:
        return backdrop.colour;
    case BackdropKind::Checkerboard:
        break;
    }
    return (x / backdrop.square + y / backdrop.square) % 2 == 0 ? kLightSquare : kDarkSquare;
}

std::uint32_t shown(Pixel pixel, const Backdrop& backdrop, int x, int y) {
    const auto packed = [](const Rgb& c) { return std::uint32_t{c.red} << 16 | std::uint32_t{c.green} << 8 | c.blue; };
    const std::uint32_t opacity = opacityOf(pixel);
    if (opacity == 255)
        return packed(rgbOf(pixel));
    const Rgb under = behind(backdrop, x, y);
    const Rgb upper = rgbOf(pixel);
    const auto mixed = [opacity](std::uint32_t a, std::uint32_t b) {
        return static_cast<std::uint8_t>((a * opacity + b * (255 - opacity) + 127) / 255);
    };
    return packed({mixed(upper.red, under.red), mixed(upper.green, under.green), mixed(upper.blue, under.blue)});
}

} // namespace

void drawPicture(const Picture& picture, const ViewBox& place, const Backdrop& backdrop, const ScreenTarget& target) {
    const int left = std::max(-place.left, 0); // of the zoomed picture, what is seen
    const int top = std::max(-place.top, 0);
    const int right = std::min(place.width, target.width - place.left);
    const int bottom = std::min(place.height, target.height - place.top);
    const std::vector<Range> columns = rangesOf(left, right, place.width, picture.width);
    const std::vector<Range> rows = rangesOf(top, bottom, place.height, picture.height);
    for (std::size_t y = 0; y < rows.size(); ++y) {
        const int line = top + static_cast<int>(y);
        std::uint32_t* to = target.pixels.data() + std::ptrdiff_t{place.top + line} * target.width + place.left + left;
        for (std::size_t x = 0; x < columns.size(); ++x) {
            to[x] = shown(sampled(picture, columns[x], rows[y]), backdrop, left + static_cast<int>(x), line);
        }
    }
}

Picture resizedPicture(const Picture& picture, int width, int height) {
    Picture resized{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), {}};
    const std::vector<Range> columns = rangesOf(0, width, width, picture.width);
    for (const Range& rows : rangesOf(0, height, height, picture.height))
        for (const Range& column : columns)
            resized.pixels.push_back(sampled(picture, column, rows));
    return resized;
}

} // namespace stage
