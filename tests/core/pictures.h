// Small pictures and animations that own their pixels, for tests of what is done to frames.
#pragma once

#include "colour/palette.h"
#include "render/image_view.h"

#include <deque>
#include <functional>
#include <random>
#include <set>
#include <vector>

namespace veldran {

using Random = std::mt19937;
using Frames = std::vector<ConstImageView>;

// A packed bitmap that owns its bytes; black, and without alpha, at first.
class Picture {
public:
    using Painter = std::function<Colour(int)>; // asked for the colour of each pixel by its running number

    Picture(int width, int height, int bits, const Painter& colourOf = {})
        : block_(packedBitmapBytes(width, height, bits).value()) {
        writeBitmapHeader(block_, width, height, bits);
        view_ = viewPackedBitmap(std::span<std::uint8_t>(block_)).value();
        for (int i = 0; colourOf && i < width * height; ++i)
            set(i % width, i / width, colourOf(i));
    }
    Picture(const Picture&) = delete;

    const ImageView& view() const { return view_; }
    Colour at(int x, int y) const {
        const std::uint8_t* pixel = view_.pixel(x, y);
        return makeColour(pixel[2], pixel[1], pixel[0]);
    }
    std::vector<int> indices() const {
        std::vector<int> all;
        for (int y = 0; y < view_.height; ++y)
            all.insert(all.end(), view_.row(y), view_.row(y) + view_.width);
        return all;
    }

private:
    void set(int x, int y, Colour colour) {
        std::uint8_t* pixel = view_.pixel(x, y);
        pixel[0] = static_cast<std::uint8_t>(blueOf(colour));
        pixel[1] = static_cast<std::uint8_t>(greenOf(colour));
        pixel[2] = static_cast<std::uint8_t>(redOf(colour));
    }

    std::vector<std::uint8_t> block_;
    ImageView view_;
};

// Frames that own their pixels.
struct Animation {
    std::deque<Picture> pictures;
    Frames frames;

    void add(int width, int height, int bits, const Picture::Painter& colourOf) {
        frames.push_back(pictures.emplace_back(width, height, bits, colourOf).view());
    }
    // One row of pixels.
    void add(const std::vector<Colour>& pixels) {
        add(static_cast<int>(pixels.size()), 1, 24, [&](int i) { return pixels[static_cast<std::size_t>(i)]; });
    }
};

inline Colour grey(int level) {
    return makeColour(level, level, level);
}

inline Colour colourOfEntry(const PaletteEntry& entry) {
    return makeColour(entry.red, entry.green, entry.blue);
}

inline std::set<Colour> colours(const Palette& palette, int count) {
    std::set<Colour> all;
    for (int i = 0; i < count; ++i)
        all.insert(colourOfEntry(palette[static_cast<std::size_t>(i)]));
    return all;
}

inline int squaredDistance(Colour a, Colour b) {
    const int red = redOf(a) - redOf(b);
    const int green = greenOf(a) - greenOf(b);
    const int blue = blueOf(a) - blueOf(b);
    return red * red + green * green + blue * blue;
}

inline Colour distinctColour(int i) { // different for 0 to 255
    return makeColour(i, 255 - i, i * 7);
}

} // namespace veldran
