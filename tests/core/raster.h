// Images to test on: memory of their own around a view.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

#include <algorithm>
#include <random>
#include <vector>

namespace veldran {

using Bytes = std::vector<std::uint8_t>;

inline constexpr std::uint8_t kPadding = 0xA5;

enum class RowOrder { TopDown, BottomUp };

// An image with three bytes of padding behind each row; its pixels are kPadding too when nothing else is said.
struct Raster {
    Bytes bytes;
    Bytes table; // colour table of 8-bit images: entry i is (i, 255 - i, i / 2) as blue, green, red
    ImageView view;

    Raster(int width, int height, int bits, RowOrder order = RowOrder::TopDown, std::uint8_t content = kPadding) {
        const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(width) * (bits / 8) + 3;
        bytes.assign(static_cast<std::size_t>(stride * height), kPadding);
        for (int i = 0; i < 256 && bits == 8; ++i)
            for (const int value : {i, 255 - i, i / 2, 0})
                table.push_back(static_cast<std::uint8_t>(value));
        view = {bytes.data(), width, height, stride, bits, bits == 8 ? table.data() : nullptr};
        if (order == RowOrder::BottomUp) {
            view.top += stride * (height - 1);
            view.stride = -stride;
        }
        for (int y = 0; y < height; ++y)
            std::ranges::fill_n(view.row(y), width * view.bytesPerPixel(), content);
    }
    Raster(const Raster&) = delete;

    Colour at(int x, int y) const {
        const std::uint8_t* pixel = view.pixel(x, y);
        return makeColour(pixel[2], pixel[1], pixel[0]);
    }
    Bytes row(int y) const { return Bytes(view.row(y), view.row(y) + view.width * view.bytesPerPixel()); }
    void setRow(int y, const Bytes& values) { std::ranges::copy(values, view.row(y)); }
    void fillRandom(unsigned seed) {
        std::mt19937 random(seed);
        for (int y = 0; y < view.height; ++y)
            std::generate_n(view.row(y), view.width * view.bytesPerPixel(),
                            [&] { return static_cast<std::uint8_t>(random() >> 24); });
    }
    bool paddingIsWhole() const {
        for (int y = 0; y < view.height; ++y)
            for (int i = 0; i < 3; ++i)
                if (view.row(y)[view.width * view.bytesPerPixel() + i] != kPadding)
                    return false;
        return true;
    }
};

} // namespace veldran
