// Nearest entries with a cache keyed by the whole colour; error diffusion; change masks.
#include "host/remap.h"

#include <algorithm>
#include <array>

namespace veldran {
namespace {

constexpr std::size_t kCacheLines = 1u << 16;

std::size_t cacheSlot(Colour colour) {
    // Fibonacci hashing: 2^32 divided by the golden ratio, the top 16 bits of the product.
    return colour * 2654435769u >> 16;
}

Colour colourOf(const std::uint8_t* pixel) {
    return makeColour(pixel[2], pixel[1], pixel[0]);
}

int limit(int channel) {
    return std::clamp(channel, 0, 255);
}

// Errors on their way to a row, in sixteenths, with a column of margin on both sides.
using ErrorRow = std::vector<std::array<int, 3>>;

// Spreads a pixel's error over the next pixel of its row and three of the row below; `ahead` is 1 or -1.
void spread(ErrorRow& here, ErrorRow& below, int column, int ahead, const std::array<int, 3>& error) {
    const auto at = [column](int offset) { return static_cast<std::size_t>(column + offset); };
    for (std::size_t c = 0; c < 3; ++c) {
        here[at(ahead)][c] += error[c] * 7;
        below[at(-ahead)][c] += error[c] * 3;
        below[at(0)][c] += error[c] * 5;
        below[at(ahead)][c] += error[c];
    }
}

} // namespace

Remapper::Remapper(const Palette& palette, int count, Dithering dithering)
    : palette_(palette), count_(count), dithering_(dithering), cache_(kCacheLines, CacheLine{kNoColour, 0}) {}

std::uint8_t Remapper::entryFor(Colour colour) {
    CacheLine& line = cache_[cacheSlot(colour)];
    if (line.colour != colour)
        line = {colour, static_cast<std::uint8_t>(nearestEntry(palette_, count_, colour))};
    return line.entry;
}

void Remapper::remap(const ConstImageView& source, const ImageView& target) {
    if (dithering_ == Dithering::ErrorDiffusion)
        diffuse(source, target);
    else
        remapNearest(source, target);
}

void Remapper::remapNearest(const ConstImageView& source, const ImageView& target) {
    for (int y = 0; y < source.height; ++y) {
        const std::uint8_t* pixel = source.row(y);
        std::uint8_t* out = target.row(y);
        for (int x = 0; x < source.width; ++x, pixel += source.bytesPerPixel())
            out[x] = entryFor(colourOf(pixel));
    }
}

void Remapper::diffuse(const ConstImageView& source, const ImageView& target) {
    ErrorRow here(static_cast<std::size_t>(source.width) + 2);
    ErrorRow below(here.size());
    for (int y = 0; y < source.height; ++y) {
        const int ahead = y % 2 == 0 ? 1 : -1;
        int x = ahead > 0 ? 0 : source.width - 1;
        for (int i = 0; i < source.width; ++i, x += ahead) {
            const std::uint8_t* pixel = source.pixel(x, y);
            const std::array<int, 3>& carried = here[static_cast<std::size_t>(x) + 1];
            // A shift rounds positive and negative errors the same way; a division would not.
            const int red = limit(pixel[2] + ((carried[0] + 8) >> 4));
            const int green = limit(pixel[1] + ((carried[1] + 8) >> 4));
            const int blue = limit(pixel[0] + ((carried[2] + 8) >> 4));
            const std::uint8_t entry = entryFor(makeColour(red, green, blue));
            const PaletteEntry& chosen = palette_[entry];
            target.row(y)[x] = entry;
            spread(here, below, x + 1, ahead, {red - chosen.red, green - chosen.green, blue - chosen.blue});
        }
        std::swap(here, below);
        std::ranges::fill(below, std::array<int, 3>{});
    }
}

void updateChangeMask(const ImageView& running, const ConstImageView& frame, const ImageView& mask) {
    const auto bytes = static_cast<std::size_t>(frame.bytesPerPixel());
    for (int y = 0; y < frame.height; ++y) {
        std::uint8_t* maskRow = mask.row(y);
        for (int x = 0; x < frame.width; ++x) {
            const auto bit = static_cast<std::uint8_t>(0x80 >> x % 8);
            const std::uint8_t* pixel = frame.pixel(x, y);
            const bool known = running.contains(x, y);
            if (known && std::memcmp(running.pixel(x, y), pixel, bytes) == 0) {
                maskRow[x / 8] |= bit;
                continue;
            }
            maskRow[x / 8] &= static_cast<std::uint8_t>(~bit);
            if (known)
                std::memcpy(running.pixel(x, y), pixel, bytes);
        }
    }
}

void fillUnchanged(const ImageView& target, const ConstImageView& mask, std::uint8_t slot) {
    for (int y = 0; y < target.height; ++y)
        for (int x = 0; x < target.width; ++x)
            if ((mask.row(y)[x / 8] << x % 8 & 0x80) != 0)
                target.row(y)[x] = slot;
}

void mapColourToSlot(const ImageView& target, const ConstImageView& source, Colour colour, std::uint8_t slot) {
    for (int y = 0; y < source.height; ++y) {
        const std::uint8_t* pixel = source.row(y);
        std::uint8_t* out = target.row(y);
        for (int x = 0; x < source.width; ++x, pixel += source.bytesPerPixel())
            if (colourOf(pixel) == colour)
                out[x] = slot;
    }
}

} // namespace veldran
