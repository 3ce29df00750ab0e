// PNG chunks over zlib; numbers are written high byte first, as the PNG standard says.
#include "core/png_writer.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <span>
#include <string_view>

namespace stage {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

// The filter types of the PNG standard that are used here.
enum class RowFilter : std::uint8_t { None = 0, Up = 2 };

void putNumber(Bytes& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

// The check sum covers the chunk's type and its data, not its length.
void putChunk(Bytes& bytes, std::string_view type, std::span<const std::uint8_t> data) {
    putNumber(bytes, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = bytes.size();
    bytes.insert(bytes.end(), type.begin(), type.end());
    bytes.insert(bytes.end(), data.begin(), data.end());
    const uLong sum = crc32(0, bytes.data() + start, static_cast<uInt>(bytes.size() - start));
    putNumber(bytes, static_cast<std::uint32_t>(sum));
}

std::uint8_t colourType(PixelFormat format) {
    switch (format) {
    case PixelFormat::Indexed:
        return 3;
    case PixelFormat::Rgb:
        return 2;
    case PixelFormat::Rgba:
        break;
    }
    return 6;
}

void putHeader(Bytes& bytes, const Frame& frame) {
    Bytes data;
    putNumber(data, frame.width);
    putNumber(data, frame.height);
    data.insert(data.end(), {8, colourType(frame.format), 0, 0, 0});
    putChunk(bytes, "IHDR", data);
}

void putPalette(Bytes& bytes, const Frame& frame) {
    Bytes colours;
    for (const Rgb& entry : frame.palette)
        colours.insert(colours.end(), {entry.red, entry.green, entry.blue});
    putChunk(bytes, "PLTE", colours);
    if (frame.transparentIndex) {
        Bytes opacities(*frame.transparentIndex + std::size_t{1}, 255);
        opacities.back() = 0;
        putChunk(bytes, "tRNS", opacities);
    }
}

// Each row as its difference from the one above compresses well for drawn pictures; palette indices have no such order
// and stay as they are.
Bytes filteredRows(const Frame& frame) {
    const RowFilter filter = frame.format == PixelFormat::Indexed ? RowFilter::None : RowFilter::Up;
    const std::size_t rowBytes = frame.rowBytes();
    Bytes rows;
    rows.reserve((rowBytes + 1) * frame.height);
    for (std::size_t y = 0; y < frame.height; ++y) {
        const std::uint8_t* row = frame.pixels.data() + y * rowBytes;
        const bool subtracts = filter == RowFilter::Up && y > 0;
        rows.push_back(static_cast<std::uint8_t>(subtracts ? RowFilter::Up : RowFilter::None));
        if (subtracts)
            std::transform(
                row, row + rowBytes, row - rowBytes, std::back_inserter(rows),
                [](std::uint8_t here, std::uint8_t above) { return static_cast<std::uint8_t>(here - above); });
        else
            rows.insert(rows.end(), row, row + rowBytes);
    }
    return rows;
}

Bytes deflated(const Bytes& data) {
    uLongf size = compressBound(static_cast<uLong>(data.size()));
    Bytes result(size);
    // The only failure with enough room for the result is lack of memory.
    if (compress2(result.data(), &size, data.data(), static_cast<uLong>(data.size()), Z_BEST_COMPRESSION) != Z_OK)
        throw std::bad_alloc();
    result.resize(size);
    return result;
}

} // namespace

std::vector<std::uint8_t> encodePng(const Frame& frame) {
    Bytes bytes(kSignature.begin(), kSignature.end());
    putHeader(bytes, frame);
    if (frame.format == PixelFormat::Indexed)
        putPalette(bytes, frame);
    putChunk(bytes, "IDAT", deflated(filteredRows(frame)));
    putChunk(bytes, "IEND", {});
    return bytes;
}

} // namespace stage
