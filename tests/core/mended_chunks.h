// PNG and MNG files whose bytes were changed, put right so far that a reader gets to see what lies behind lengths,
// check sums and compression.
#pragma once

#include "formats/png/png_coding.h"

#include <zlib.h>

#include <algorithm>
#include <string>

namespace stage {

// What begins pixels that are not compressed yet; no zlib stream begins so.
inline constexpr std::uint8_t kRawPixels = 0;

inline PngBytes compressedPixels(std::span<const std::uint8_t> pixels) {
    uLongf size = compressBound(static_cast<uLong>(pixels.size()));
    PngBytes packed(size);
    compress2(packed.data(), &size, pixels.data(), static_cast<uLong>(pixels.size()), 1);
    packed.resize(size);
    return packed;
}

// The same file with chunks that end where the file ends, right check sums, and pixels compressed where kRawPixels says
// that they are not.
inline PngBytes mendedChunks(std::span<const std::uint8_t> file) {
    constexpr std::size_t kSignature = 8;
    constexpr std::size_t kHead = 8; // length and type
    constexpr std::size_t kSum = 4;
    std::span<const std::uint8_t> rest = file.subspan(std::min(kSignature, file.size()));
    PngBytes mended(file.begin(), file.end() - static_cast<std::ptrdiff_t>(rest.size()));
    while (rest.size() >= kHead) {
        const std::size_t stated = std::size_t{rest[0]} << 24 | rest[1] << 16 | rest[2] << 8 | rest[3];
        const std::string type(rest.begin() + 4, rest.begin() + kHead);
        rest = rest.subspan(kHead);
        const std::span<const std::uint8_t> data = rest.first(std::min(stated, rest.size()));
        rest = rest.subspan(std::min(stated + kSum, rest.size()));
        const std::size_t start = type == "IDAT" ? 0 : type == "fdAT" ? 4 : data.size(); // of pixels
        PngBytes mendedData(data.begin(), data.end());
        if (start < data.size() && data[start] == kRawPixels) {
            const PngBytes packed = compressedPixels(data.subspan(start + 1));
            mendedData.resize(start);
            mendedData.insert(mendedData.end(), packed.begin(), packed.end());
        }
        putChunk(mended, type, mendedData);
    }
    return mended;
}

} // namespace stage
