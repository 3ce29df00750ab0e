// The built-in palettes are cubes but for three short lists and the greys.
#include "colour/palette.h"

#include <algorithm>
#include <span>

namespace veldran {
namespace {

using Levels = std::span<const std::uint8_t>;

constexpr std::uint8_t kTwoLevels[] = {0, 255};
constexpr std::uint8_t kFourLevels[] = {0, 85, 170, 255};
constexpr std::uint8_t kSixLevels[] = {0, 51, 102, 153, 204, 255};
constexpr std::uint8_t kEightLevels[] = {0, 36, 72, 108, 144, 180, 216, 255};

// The cube with greys rounds its levels instead of taking multiples of 36, so its greens differ from those above.
constexpr std::uint8_t kGreyCubeReds[] = {0, 43, 85, 128, 170, 213, 255};
constexpr std::uint8_t kGreyCubeGreens[] = {0, 36, 73, 109, 146, 182, 219, 255};
constexpr std::uint8_t kInsertedGreys[] = {1,   8,   16,  24,  32,  41,  49,  57,  65,  74,  82,
                                           90,  98,  106, 115, 123, 131, 139, 148, 156, 164, 172,
                                           180, 189, 197, 205, 213, 222, 230, 238, 246, 254};
constexpr std::size_t kGreysBegin = 112; // where the greys stand in the cube's order

constexpr PaletteEntry kBlackAndWhite[] = {{0, 0, 0}, {255, 255, 255}};
constexpr PaletteEntry kSystemColours[] = {
    {0x00, 0x00, 0x00}, {0x80, 0x00, 0x00}, {0x00, 0x80, 0x00}, {0x80, 0x80, 0x00},
    {0x00, 0x00, 0x80}, {0x80, 0x00, 0x80}, {0x00, 0x80, 0x80}, {0x80, 0x80, 0x80},
    {0xC0, 0xC0, 0xC0}, {0xFF, 0x00, 0x00}, {0x00, 0xFF, 0x00}, {0xFF, 0xFF, 0x00},
    {0x00, 0x00, 0xFF}, {0xFF, 0x00, 0xFF}, {0x00, 0xFF, 0xFF}, {0xFF, 0xFF, 0xFF},
};
constexpr PaletteEntry kPrimaries[] = {{0, 0, 0},   {255, 0, 0},   {0, 255, 0},   {255, 255, 0},
                                       {0, 0, 255}, {255, 0, 255}, {0, 255, 255}, {255, 255, 255}};

int fillList(Palette& palette, std::span<const PaletteEntry> list) {
    std::ranges::copy(list, palette.begin());
    return static_cast<int>(list.size());
}

// Red changes slowest, blue fastest.
int fillCube(Palette& palette, Levels reds, Levels greens, Levels blues) {
    std::size_t count = 0;
    for (const std::uint8_t red : reds)
        for (const std::uint8_t green : greens)
            for (const std::uint8_t blue : blues)
                palette[count++] = {red, green, blue};
    return static_cast<int>(count);
}

int fillCubeWithGreys(Palette& palette) {
    const int cube = fillCube(palette, kGreyCubeReds, kGreyCubeGreens, kFourLevels);
    std::copy_backward(palette.begin() + kGreysBegin, palette.begin() + cube, palette.end());
    std::ranges::transform(kInsertedGreys, palette.begin() + kGreysBegin, [](std::uint8_t grey) {
        return PaletteEntry{grey, grey, grey};
    });
    return 256;
}

int fillGreys(Palette& palette) {
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const auto grey = static_cast<std::uint8_t>(i);
        palette[i] = {grey, grey, grey};
    }
    return 256;
}

int fillChoice(Palette& palette, int choice) {
    switch (choice) {
    case 0:
        return fillList(palette, kBlackAndWhite);
    case 1:
        return fillList(palette, kSystemColours);
    case 2:
        return fillCube(palette, kFourLevels, kFourLevels, kTwoLevels);
    case 3:
        return fillCube(palette, kFourLevels, kFourLevels, kFourLevels);
    case 4:
        return fillCube(palette, kFourLevels, kEightLevels, kFourLevels);
    case 5:
        return fillCube(palette, kSixLevels, kSixLevels, kSixLevels);
    case 7:
        return fillCubeWithGreys(palette);
    case 8:
        return fillGreys(palette);
    case 9:
        return fillList(palette, kPrimaries);
    default:
        return fillCube(palette, kEightLevels, kEightLevels, kFourLevels);
    }
}

} // namespace

int fixedPalette(Palette* palette, int* depth, int choice) {
    Palette filled{};
    const int count = fillChoice(filled, choice);
    if (palette != nullptr)
        *palette = filled;
    if (depth != nullptr)
        *depth = depthForColours(count);
    return count;
}

int depthForColours(int count) {
    for (int depth = 1; depth <= 8; ++depth)
        if (count <= 1 << depth)
            return depth;
    return 24;
}

int nearestEntry(const Palette& palette, int count, Colour colour) {
    int nearest = 0;
    int least = INT32_MAX;
    for (int i = 0; i < count && least > 0; ++i) {
        const int distance = squaredDistance(palette[static_cast<std::size_t>(i)], paletteEntry(colour));
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

} // namespace veldran
