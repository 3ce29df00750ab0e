// Unpacking of device-independent bitmaps; see the header.
#include "document/packed_bitmap.h"

#include "base/failure.h"

#include <cstring>

namespace stage {
namespace {

// The fields of the 40-byte bitmap header, in file order.
struct BitmapHeader {
    std::uint32_t size;
    std::int32_t width;
    std::int32_t height;
    std::uint16_t planes;
    std::uint16_t bitsPerPixel;
    std::uint32_t compression;
    std::uint32_t imageBytes;
    std::int32_t horizontalResolution;
    std::int32_t verticalResolution;
    std::uint32_t coloursUsed;
    std::uint32_t coloursImportant;
};
static_assert(sizeof(BitmapHeader) == 40);

constexpr std::size_t kColours = 256;
constexpr std::size_t kColourTableBytes = kColours * 4;
constexpr std::int32_t kLargestBitmapSide = 65535;

void requireOfPicture(bool condition, const char* what) {
    if (!condition)
        throw Failure(ExitCode::PluginFailed, std::string("The plugin delivered a damaged picture: ") + what + ".");
}

// Blue, green, red and, with four bytes, opacity, as bitmaps order them.
void unpackRow(const std::byte* from, std::size_t sourceStep, std::size_t width, std::size_t targetStep,
               std::uint8_t* to) {
    for (std::size_t x = 0; x < width; ++x, from += sourceStep, to += targetStep) {
        to[0] = static_cast<std::uint8_t>(from[2]);
        to[1] = static_cast<std::uint8_t>(from[1]);
        to[2] = static_cast<std::uint8_t>(from[0]);
        if (targetStep == 4)
            to[3] = static_cast<std::uint8_t>(from[3]);
    }
}

void unpackColourTable(const std::byte* from, Palette& palette) {
    for (Rgb& entry : palette) {
        entry = {static_cast<std::uint8_t>(from[2]), static_cast<std::uint8_t>(from[1]),
                 static_cast<std::uint8_t>(from[0])};
        from += 4;
    }
}

} // namespace

Frame unpackBitmap(std::span<const std::byte> block, OpacityByte opacity) {
    BitmapHeader header;
    requireOfPicture(block.size() >= sizeof(header), "its block is shorter than a header");
    std::memcpy(&header, block.data(), sizeof(header));
    requireOfPicture(header.size == sizeof(header) && header.planes == 1 && header.compression == 0,
                     "its header is of an unknown form");
    requireOfPicture(header.width >= 1 && header.width <= kLargestBitmapSide && header.height >= 1 &&
                         header.height <= kLargestBitmapSide,
                     "its size is out of range");
    requireOfPicture(header.bitsPerPixel == 8 || header.bitsPerPixel == 24 || header.bitsPerPixel == 32,
                     "its colour depth is not 8, 24 or 32");
    requireOfPicture(header.coloursUsed == 0 || (header.coloursUsed == kColours && header.bitsPerPixel == 8),
                     "its colour table is of another size"); // and its rows would begin elsewhere

    Frame frame;
    frame.width = static_cast<std::uint32_t>(header.width);
    frame.height = static_cast<std::uint32_t>(header.height);
    if (header.bitsPerPixel != 8)
        frame.format = header.bitsPerPixel == 32 && opacity == OpacityByte::Used ? PixelFormat::Rgba : PixelFormat::Rgb;

    // At most 65535 * 4 bytes a row and 65535 rows: below 2^35, no overflow in 64 bits.
    const std::size_t sourceStep = header.bitsPerPixel / 8u;
    const std::size_t stride = (frame.width * sourceStep + 3) / 4 * 4;
    const std::size_t pixelOffset = sizeof(header) + (header.bitsPerPixel == 8 ? kColourTableBytes : 0);
    requireOfPicture(block.size() >= pixelOffset && (block.size() - pixelOffset) / stride >= frame.height,
                     "its block is shorter than its picture");
    if (frame.format == PixelFormat::Indexed)
        unpackColourTable(block.data() + sizeof(header), frame.palette);
    frame.pixels.resize(frame.rowBytes() * frame.height);
    for (std::size_t y = 0; y < frame.height; ++y) {
        const std::byte* from = block.data() + pixelOffset + (frame.height - 1 - y) * stride;
        std::uint8_t* to = frame.pixels.data() + y * frame.rowBytes();
        if (frame.format == PixelFormat::Indexed)
            std::memcpy(to, from, frame.width);
        else
            unpackRow(from, sourceStep, frame.width, bytesPerPixel(frame.format), to);
    }
    return frame;
}

} // namespace stage
