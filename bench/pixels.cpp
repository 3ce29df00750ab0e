// Resampling, glow and blur, bezel, mask, scale grid, alpha merge on images like those of a screen with a trace.
#include "bench.h"

#include "render/bezel.h"
#include "render/blend.h"
#include "render/light/glow.h"
#include "render/resample.h"
#include "render/scale_grid.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>

namespace veldran::bench {
namespace {

// A packed bitmap of its own.
struct Picture {
    std::vector<std::uint8_t> block;
    ImageView view;

    Picture(int width, int height, int bits) : block(packedBitmapBytes(width, height, bits).value()) {
        writeBitmapHeader(block, width, height, bits);
        view = viewPackedBitmap(std::span<std::uint8_t>(block)).value();
    }
};
using Shared = std::shared_ptr<Picture>;

Shared blank(int width, int height, int bits) {
    return std::make_shared<Picture>(width, height, bits);
}

// A bright curve on a dark ground with a little noise, so that nothing can count on flat areas.
Shared screen(int width, int height, int bits) {
    Shared picture = blank(width, height, bits);
    std::mt19937 random(1);
    std::generate(picture->block.begin() + sizeof(BitmapHeader), picture->block.end(),
                  [&] { return static_cast<std::uint8_t>(40 + (random() >> 30)); });
    const int points = 4 * (width + height);
    for (int i = 0; i < points; ++i) {
        const double angle = i * 6.283185307 / points;
        std::uint8_t* pixel = picture->view.row(static_cast<int>((height - 4) * (0.5 + 0.45 * std::sin(3 * angle)))) +
                              bits / 8 * static_cast<int>((width - 4) * (0.5 + 0.45 * std::cos(angle)));
        std::memset(pixel, 220, static_cast<std::size_t>(bits / 8) * 3);
    }
    return picture;
}

double pixelsOf(const Shared& picture) {
    return static_cast<double>(picture->view.width) * picture->view.height;
}

double bytesOf(const Shared& picture) {
    return static_cast<double>(picture->block.size());
}

// Per pixel of the source.
Stage resampling(const std::string& name, const Shared& source, int width, int height) {
    const Shared target = blank(width, height, source->view.bits == 32 ? 32 : 24);
    return {"resample " + name, pixelsOf(source), bytesOf(source), 1,
            [=] { resampleArea(source->view, target->view); }};
}

// A stage that changes a picture and begins each run with the same one; the copy is part of what is measured.
template <class Change>
Stage changing(const std::string& name, const Shared& source, Change change) {
    const Shared work = std::make_shared<Picture>(source->view.width, source->view.height, source->view.bits);
    return {name, pixelsOf(source), bytesOf(source), 1, [=] {
                std::ranges::copy(source->block, work->block.begin());
                change(work->view);
            }};
}

std::vector<Stage> stages(int width, int height) {
    const Shared colours = screen(width, height, 24);
    const Shared alpha = screen(width, height, 24);
    const Shared deep = screen(width, height, 32);
    const Shared indexed = screen(width, height, 8);
    const Shared thirds = screen(width / 3 * 3, height / 3 * 3, 24);
    const Shared merged = blank(width, height, 32);
    const Shared mask = blank(width, height, 24);
    const BezelShape shape{BezelStyle::RoundedRectangle, std::min(width, height) / 10, std::min(width, height) / 10};
    const auto bezel = std::make_shared<Bezel>(width, height, shape, 0xCCD9D9, 0x202020);
    const auto percent = [&](const std::string& name, const Shared& source, int value) {
        return resampling(name, source, scaledLength(width, value), scaledLength(height, value));
    };
    return {
        percent("50 %", colours, 50),
        percent("50 %, 32 bits", deep, 50),
        percent("50 %, palette", indexed, 50),
        resampling("a third", thirds, width / 3, height / 3),
        percent("33 %", colours, 33),
        percent("75 %", colours, 75),
        percent("150 %", colours, 150),
        changing("blur 17", colours, [](const ImageView& image) { blurImage(image, 17); }),
        changing("blur 66", colours, [](const ImageView& image) { blurImage(image, 66); }),
        changing("glow 17", colours, [](const ImageView& image) { glowImage(image, 100, 17); }),
        changing("glow 66", colours, [](const ImageView& image) { glowImage(image, 100, 66); }),
        {"bezel, worked out", pixelsOf(colours), bytesOf(colours), 1,
         [=] { Bezel(width, height, shape, 0xCCD9D9, 0x202020); }},
        changing("bezel, drawn", colours, [=](const ImageView& image) { bezel->draw(image); }),
        {"bezel mask", pixelsOf(mask), bytesOf(mask), 1, [=] { drawBezelMask(mask->view, shape); }},
        changing("scale grid", colours,
                 [](const ImageView& image) { drawScaleGrid(image, 20, 20, image.width - 20, image.height - 20, 0); }),
        {"alpha merge", pixelsOf(merged), (bytesOf(colours) + bytesOf(alpha) + bytesOf(merged)) / 2, 1,
         [=] { mergeAlphaPixels(colours->view, alpha->view, merged->view); }},
    };
}

} // namespace

void benchPixels() {
    printTable("Pixels: 1000 x 1000", stages(1000, 1000));
}

} // namespace veldran::bench
