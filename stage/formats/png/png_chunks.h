// Reading of what PNG, APNG and MNG share: chunks with their check sums, texts, and the pixels of one picture.
#pragma once

#include "base/byte_cursor.h"
#include "document/picture.h"
#include "formats/animation_reader.h"

#include <array>
#include <string_view>

namespace stage {

struct Chunk {
    std::string_view type; // four letters
    std::span<const std::uint8_t> data;

    // A viewer that does not know it cannot show the file.
    bool isCritical() const { return (type[0] & 0x20) == 0; }
};

// Throws Failure(FileTrouble) for a chunk that is cut off or whose check sum is wrong.
Chunk nextChunk(ByteCursor& bytes);

// Takes the comment, and how the document was made, from a text chunk; other chunks and texts are left alone. A text
// that cannot be read is none.
void readText(const Chunk& chunk, Animation& animation);

// Palette and transparency as the chunks PLTE and tRNS hold them.
struct PngColours {
    std::vector<std::uint8_t> palette;      // red, green, blue
    std::vector<std::uint8_t> transparency; // opacities of the palette, or the samples of the transparent colour
};

struct PngHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    unsigned depth = 0;  // bits a sample: 1, 2, 4, 8, 16
    unsigned colour = 0; // the standard's colour type
    bool isInterlaced = false;

    unsigned samples() const;
    std::size_t rowBytes(std::size_t pixels) const { return (pixels * samples() * depth + 7) / 8; }
};

// Throws Failure(FileTrouble) for a header that the standard does not allow.
PngHeader readHeader(std::span<const std::uint8_t> data);

// The picture in the bytes of its IDAT chunks, joined. Throws Failure(FileTrouble). Nothing is allocated that the bytes
// could not fill.
Picture readPicture(const PngHeader& header, const PngColours& colours, std::span<const std::uint8_t> packed);

} // namespace stage
