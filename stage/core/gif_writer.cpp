// One function for each block of GIF89a; numbers are written low byte first.
#include "core/gif_writer.h"

#include "core/failure.h"
#include "core/lzw.h"

#include <algorithm>
#include <bit>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kLargestNumber = 65535;
constexpr std::size_t kLargestSubBlock = 255;
constexpr std::uint8_t kExtension = 0x21;
constexpr std::uint8_t kTrailer = 0x3B;

void putNumber(Bytes& bytes, std::uint32_t number) {
    bytes.push_back(static_cast<std::uint8_t>(number));
    bytes.push_back(static_cast<std::uint8_t>(number >> 8));
}

void putPalette(Bytes& bytes, const Palette& palette, unsigned bits) {
    for (std::size_t i = 0; i < std::size_t{1} << bits; ++i)
        bytes.insert(bytes.end(), {palette[i].red, palette[i].green, palette[i].blue});
}

void putSubBlocks(Bytes& bytes, std::span<const std::uint8_t> data) {
    while (!data.empty()) {
        const std::size_t count = std::min(data.size(), kLargestSubBlock);
        bytes.push_back(static_cast<std::uint8_t>(count));
        bytes.insert(bytes.end(), data.begin(), data.begin() + static_cast<std::ptrdiff_t>(count));
        data = data.subspan(count);
    }
    bytes.push_back(0);
}

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void putScreen(Bytes& bytes, const GifScreen& screen) {
    std::ranges::copy(std::string_view("GIF89a"), std::back_inserter(bytes));
    putNumber(bytes, screen.width);
    putNumber(bytes, screen.height);
    // A global palette follows; eight bits per primary colour; the palette's size.
    bytes.push_back(static_cast<std::uint8_t>(0x80 | 0x70 | (screen.bitsPerPixel - 1)));
    bytes.push_back(screen.backgroundIndex);
    bytes.push_back(0); // square pixels
    putPalette(bytes, screen.palette, screen.bitsPerPixel);
}

void putLoop(Bytes& bytes) {
    bytes.insert(bytes.end(), {kExtension, 0xFF, 11});
    std::ranges::copy(std::string_view("NETSCAPE2.0"), std::back_inserter(bytes));
    bytes.insert(bytes.end(), {3, 1, 0, 0, 0}); // repeat count 0: forever
}

void putGraphicControl(Bytes& bytes, const Frame& frame, Disposal disposal) {
    const int flags = static_cast<int>(disposal) << 2 | (frame.transparentIndex ? 1 : 0);
    bytes.insert(bytes.end(), {kExtension, 0xF9, 4, static_cast<std::uint8_t>(flags)});
    putNumber(bytes, std::min(frame.delay, kLargestNumber));
    bytes.push_back(frame.transparentIndex.value_or(0));
    bytes.push_back(0);
}

// Bits of the palette that the frame brings along, or 0 when the global palette shows all its pixels as they are.
unsigned localPaletteBits(const Frame& frame, const GifScreen& screen) {
    std::array<bool, 256> used{};
    for (const std::uint8_t index : frame.pixels)
        used[index] = true;
    unsigned largest = 0;
    bool differs = false;
    for (unsigned i = 0; i < used.size(); ++i) {
        if (!used[i])
            continue;
        largest = i;
        differs = differs || (frame.transparentIndex != i && frame.palette[i] != screen.palette[i]);
    }
    if (!differs && largest < 1u << screen.bitsPerPixel)
        return 0;
    return std::max(1u, static_cast<unsigned>(std::bit_width(largest)));
}

void putImage(Bytes& bytes, const Frame& frame, const GifScreen& screen) {
    const unsigned localBits = localPaletteBits(frame, screen);
    bytes.push_back(0x2C);
    putNumber(bytes, 0);
    putNumber(bytes, 0);
    putNumber(bytes, frame.width);
    putNumber(bytes, frame.height);
    bytes.push_back(static_cast<std::uint8_t>(localBits == 0 ? 0 : 0x80 | (localBits - 1)));
    if (localBits != 0)
        putPalette(bytes, frame.palette, localBits);
    const unsigned minimumCodeSize = std::max(2u, localBits == 0 ? screen.bitsPerPixel : localBits);
    bytes.push_back(static_cast<std::uint8_t>(minimumCodeSize));
    putSubBlocks(bytes, compressLzw(frame.pixels, minimumCodeSize));
}

} // namespace

GifWriter::GifWriter(OutputFile& file, const GifScreen& screen) : file_(file), screen_(screen) {
    requireOfPlugin(screen.width >= 1 && screen.width <= kLargestNumber && screen.height >= 1 &&
                        screen.height <= kLargestNumber,
                    "A GIF file cannot have this size: each side must have 1 to 65535 pixels.");
    requireOfPlugin(screen.bitsPerPixel >= 1 && screen.bitsPerPixel <= 8, "A GIF file has 1 to 8 bits per pixel.");
    Bytes bytes;
    putScreen(bytes, screen);
    putLoop(bytes);
    bytes.push_back(kTrailer);
    file_.write(bytes);
}

void GifWriter::addFrame(const Frame& frame, Disposal disposal) {
    requireOfPlugin(frame.format == PixelFormat::Indexed, "A GIF file can only hold frames with a palette.");
    requireOfPlugin(frame.width <= screen_.width && frame.height <= screen_.height,
                    "A frame is larger than the animation.");
    Bytes bytes;
    putGraphicControl(bytes, frame, disposal);
    putImage(bytes, frame, screen_);
    append(std::move(bytes));
}

void GifWriter::addComment(std::string_view text) {
    Bytes bytes = {kExtension, 0xFE};
    putSubBlocks(bytes, bytesOf(text));
    append(std::move(bytes));
}

// The trailer at the end gives way to the blocks and a new trailer.
void GifWriter::append(std::vector<std::uint8_t> blocks) {
    blocks.push_back(kTrailer);
    file_.stepBack(1);
    file_.write(blocks);
    file_.flush();
}

} // namespace stage
