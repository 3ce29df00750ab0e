// Packed bitmaps that come from somebody else: of any depth and order of rows, with any header. Nothing in them is
// believed before it is checked against the size of their block. Core: knows no windows.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace veldran {

class ForeignBitmap {
public:
    // Reads the header of a bitmap that fills `block`, which must outlive the object. Nothing unless it is a bitmap of
    // 1, 4, 8, 16, 24 or 32 bits, uncompressed or with channel masks, with sides of 1 to 65535 pixels, all of whose
    // rows lie in the block.
    static std::optional<ForeignBitmap> open(std::span<const std::uint8_t> block);

    int width() const { return width_; }
    int height() const { return height_; }

    // Blue, green, red and opacity of `pixels.size()` pixels of row `y` (0 is the top one) from column `x` on. The
    // caller sees to it that they lie in the picture. An index beyond the colour table is black. Pixels are opaque
    // unless the bitmap says otherwise: by a mask, or by any fourth byte of 32 bits that is not 0.
    using Pixel = std::array<std::uint8_t, 4>;
    void readRow(int y, int x, std::span<Pixel> pixels) const;

private:
    // A channel of pixels of 16 or 32 bits.
    struct Mask {
        int shift = 0;
        std::uint32_t most = 0; // its largest value; 0: there is none

        static std::optional<Mask> of(std::uint32_t bits);
        std::uint8_t valueIn(std::uint32_t pixel) const;
    };

    bool readMasks(std::span<const std::uint8_t> block, std::uint32_t compression, std::size_t headerSize);
    bool setMasks(const std::array<std::uint32_t, 4>& bits);
    bool hasOpacity() const;
    std::uint32_t valueAt(const std::uint8_t* row, int x) const;

    const std::uint8_t* rows_ = nullptr; // the first one in memory
    std::size_t stride_ = 0;
    int width_ = 0;
    int height_ = 0;
    int bits_ = 0;
    bool topDown_ = false;
    std::vector<Pixel> table_;
    std::array<Mask, 4> masks_{}; // blue, green, red, opacity
};

} // namespace veldran
