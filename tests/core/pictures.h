// Small pictures and animations that own their pixels, for tests of what is done to frames.
#pragma once

#include "colour/palette.h"
#include "render/image_view.h"

#include <algorithm>
#include <array>
#include <deque>
#include <functional>
#include <random>
#include <set>
#include <span>
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
        for (int i = 0; colourOf && i < width * height; ++i) {
            const PaletteEntry colour = paletteEntry(colourOf(i));
            std::ranges::copy(std::array{colour.blue, colour.green, colour.red}, view_.pixel(i % width, i / width));
        }
    }
    Picture(const Picture&) = delete;

    const ImageView& view() const { return view_; }
    Colour at(int x, int y) const {
        const std::uint8_t* pixel = view_.pixel(x, y);
        return makeColour(pixel[2], pixel[1], pixel[0]);
    }
    std::vector<Colour> colours() const {
        std::vector<Colour> all;
        for (int i = 0; i < view_.width * view_.height; ++i)
            all.push_back(at(i % view_.width, i / view_.width));
        return all;
    }
    std::vector<int> indices() const {
        std::vector<int> all;
        for (int y = 0; y < view_.height; ++y)
            all.insert(all.end(), view_.row(y), view_.row(y) + view_.width);
        return all;
    }

private:
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

inline std::set<Colour> colours(const Palette& palette, int count) {
    std::set<Colour> all;
    for (const auto& [red, green, blue] : std::span(palette).first(static_cast<std::size_t>(count)))
        all.insert(makeColour(red, green, blue));
    return all;
}

inline Colour distinctColour(int i) { // different for 0 to 255
    return makeColour(i, 255 - i, i * 7);
}

} // namespace veldran
