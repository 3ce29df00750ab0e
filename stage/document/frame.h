// One picture of an animation, independent of any file format. Rows run top-down without padding; the frame owns all.
// Never holds a picture whose pixel bytes do not fit its size: the one place that makes frames checks it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace stage {

// What GIF can say of a side in pixels; MNG and PNG files of larger ones are refused.
inline constexpr std::uint32_t kLargestSide = 65535;

struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const Rgb&) const = default;
};

using Palette = std::array<Rgb, 256>;

enum class PixelFormat { Indexed, Rgb, Rgba };

constexpr std::size_t bytesPerPixel(PixelFormat format) {
    return format == PixelFormat::Indexed ? 1 : format == PixelFormat::Rgb ? 3 : 4;
}

struct Frame {
    std::uint32_t width = 0;  // 1 to 65535
    std::uint32_t height = 0; // 1 to 65535
    PixelFormat format = PixelFormat::Indexed;
    Palette palette{};                            // of an Indexed frame
    std::vector<std::uint8_t> pixels;             // width * height * bytesPerPixel(format); red, green, blue, opacity
    std::uint32_t delay = 0;                      // milliseconds
    std::optional<std::uint8_t> transparentIndex; // of an Indexed frame

    std::size_t rowBytes() const { return width * bytesPerPixel(format); }
};

} // namespace stage
