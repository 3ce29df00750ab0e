// Undoing what PNG does to pixels; see the header.
#include "formats/png/png_chunks.h"

#include "base/byte_sink.h"

#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace stage {
namespace {

constexpr std::uint32_t kLargestPngNumber = 0x7FFFFFFF;
// Deflate cannot make more of a byte: a code of two bits for 258 bytes.
constexpr std::uint64_t kLargestGrowth = 1032;

enum ColourType : unsigned { kGrey = 0, kRgb = 2, kPalette = 3, kGreyAlpha = 4, kRgbAlpha = 6 };

// Inflates up to target's size. The number of bytes that came out; nothing when the stream is damaged.
std::optional<std::size_t> inflateInto(std::span<const std::uint8_t> packed, std::span<std::uint8_t> target) {
    z_stream zip{};
    if (inflateInit(&zip) != Z_OK)
        return std::nullopt;
    zip.next_in = const_cast<Bytef*>(packed.data()); // zlib does not write there
    zip.avail_in = static_cast<uInt>(packed.size());
    zip.next_out = target.data();
    zip.avail_out = static_cast<uInt>(target.size());
    const int status = inflate(&zip, Z_FINISH);
    const std::size_t count = zip.total_out;
    inflateEnd(&zip);
    const bool isDamaged = status == Z_DATA_ERROR || status == Z_NEED_DICT || status == Z_MEM_ERROR;
    return isDamaged ? std::nullopt : std::optional(count);
}

std::optional<std::string> inflatedText(std::span<const std::uint8_t> packed) {
    constexpr std::size_t kLongestText = 1 << 20;
    Bytes bytes(std::min<std::uint64_t>(kLongestText, packed.size() * kLargestGrowth));
    const auto count = inflateInto(packed, bytes);
    if (!count)
        return std::nullopt;
    return std::string(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(*count));
}

std::string utf8FromLatin1(std::string_view text) {
    std::string utf8;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

// Cuts the text up to the next zero byte off; nothing without one.
std::optional<std::string_view> cutToZero(std::span<const std::uint8_t>& bytes) {
    const auto zero = std::ranges::find(bytes, 0);
    if (zero == bytes.end())
        return std::nullopt;
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()),
                                static_cast<std::size_t>(zero - bytes.begin()));
    bytes = bytes.subspan(text.size() + 1);
    return text;
}

std::optional<std::string> plainText(std::span<const std::uint8_t> bytes) {
    return std::string(bytes.begin(), bytes.end());
}

// What follows the keyword of each kind of text chunk.
std::optional<std::string> textAfterKeyword(std::string_view type, std::span<const std::uint8_t> rest) {
    if (type == "tEXt")
        return utf8FromLatin1(*plainText(rest));
    if (type == "zTXt") {
        const auto text = rest.empty() || rest[0] != 0 ? std::nullopt : inflatedText(rest.subspan(1));
        return text ? std::optional(utf8FromLatin1(*text)) : std::nullopt;
    }
    if (rest.size() < 2)
        return std::nullopt;
    const bool isPacked = rest[0] == 1;
    rest = rest.subspan(2);
    if (!cutToZero(rest) || !cutToZero(rest)) // language, and the keyword in it
        return std::nullopt;
    return isPacked ? inflatedText(rest) : plainText(rest);
}

// Undoes the filters of `height` rows, each with the filter's number before it.
void unfilter(std::span<std::uint8_t> rows, std::size_t rowBytes, std::size_t height, std::size_t step) {
    for (std::size_t y = 0; y < height; ++y) {
        std::uint8_t* row = rows.data() + y * (rowBytes + 1);
        const std::uint8_t filter = *row++;
        const std::uint8_t* up = y > 0 ? row - rowBytes - 1 : nullptr;
        requireOfFile(filter <= 4, "a row has an unknown filter");
        for (std::size_t x = 0; x < rowBytes; ++x) {
            const int left = x >= step ? row[x - step] : 0;
            const int above = up != nullptr ? up[x] : 0;
            const int corner = up != nullptr && x >= step ? up[x - step] : 0;
            int foretold = 0;
            if (filter == 1)
                foretold = left;
            else if (filter == 2)
                foretold = above;
            else if (filter == 3)
                foretold = (left + above) / 2;
            else if (filter == 4) {
                const int toLeft = std::abs(above - corner);
                const int toAbove = std::abs(left - corner);
                const int toCorner = std::abs(left + above - 2 * corner);
                foretold = toLeft <= toAbove && toLeft <= toCorner ? left : toAbove <= toCorner ? above : corner;
            }
            row[x] = static_cast<std::uint8_t>(row[x] + foretold);
        }
    }
}

// A row of a picture, sample by sample.
class Samples {
public:
    Samples(const std::uint8_t* row, unsigned depth) : row_(row), depth_(depth) {}

    std::uint32_t next() {
        if (depth_ == 16) {
            const std::uint32_t sample = std::uint32_t{row_[0]} << 8 | row_[1];
            row_ += 2;
            return sample;
        }
        if (bit_ == 8) {
            bit_ = 0;
            ++row_;
        }
        bit_ += depth_;
        return *row_ >> (8 - bit_) & ((1u << depth_) - 1);
    }

private:
    const std::uint8_t* row_;
    unsigned depth_;
    unsigned bit_ = 0; // of the byte, already read
};

class PixelReader {
public:
    PixelReader(const PngHeader& header, const PngColours& colours) : header_(header), colours_(colours) {
        if (header.colour == kPalette)
            requireOfFile(!colours.palette.empty(), "it has no palette");
        const std::size_t wanted = header.colour == kGrey ? 2 : header.colour == kRgb ? 6 : 0;
        hasKey_ = wanted > 0 && colours.transparency.size() == wanted;
    }

    Pixel next(Samples& samples) const {
        std::array<std::uint32_t, 4> s{};
        for (unsigned i = 0; i < header_.samples(); ++i)
            s[i] = samples.next();
        switch (header_.colour) {
        case kPalette:
            return paletteEntry(s[0]);
        case kGrey:
        case kGreyAlpha: {
            const std::uint8_t level = byteOf(s[0]);
            return pixelOf({level, level, level}, header_.colour == kGreyAlpha ? byteOf(s[1]) : isKey(s) ? 0 : 255);
        }
        default:
            return pixelOf({byteOf(s[0]), byteOf(s[1]), byteOf(s[2])}, header_.colour == kRgbAlpha ? byteOf(s[3])
                                                                       : isKey(s)                  ? 0
                                                                                                   : 255);
        }
    }

private:
    Pixel paletteEntry(std::uint32_t index) const {
        requireOfFile(index < colours_.palette.size() / 3, "a pixel lies outside the palette");
        const std::uint8_t* c = &colours_.palette[index * 3];
        return pixelOf({c[0], c[1], c[2]}, index < colours_.transparency.size() ? colours_.transparency[index] : 255u);
    }
    std::uint8_t byteOf(std::uint32_t sample) const {
        if (header_.depth == 16)
            return static_cast<std::uint8_t>(sample >> 8);
        return static_cast<std::uint8_t>(sample * 255 / ((1u << header_.depth) - 1));
    }
    // The colour's numbers have 16 bits, of which the lowest count.
    bool isKey(const std::array<std::uint32_t, 4>& samples) const {
        if (!hasKey_)
            return false;
        const std::uint32_t most = (1u << header_.depth) - 1;
        for (std::size_t i = 0; i < header_.samples(); ++i) {
            const std::uint32_t key =
                std::uint32_t{colours_.transparency[i * 2]} << 8 | colours_.transparency[i * 2 + 1];
            if (samples[i] != (key & most))
                return false;
        }
        return true;
    }

    const PngHeader& header_;
    const PngColours& colours_;
    bool hasKey_ = false;
};

// The rows and columns of a picture that come together: all, or those of one of the seven passes of an interlaced one.
struct Pass {
    std::uint32_t x, y, stepX, stepY;

    std::uint32_t width(const PngHeader& header) const {
        return header.width > x ? (header.width - x + stepX - 1) / stepX : 0;
    }
    std::uint32_t height(const PngHeader& header) const {
        return header.height > y ? (header.height - y + stepY - 1) / stepY : 0;
    }
    std::size_t bytes(const PngHeader& header) const {
        return width(header) == 0 ? 0 : (header.rowBytes(width(header)) + 1) * height(header);
    }
};

std::span<const Pass> passesOf(const PngHeader& header) {
    static constexpr Pass kWhole[] = {{0, 0, 1, 1}};
    static constexpr Pass kInterlaced[] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                           {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
    return header.isInterlaced ? std::span<const Pass>(kInterlaced) : std::span<const Pass>(kWhole);
}

} // namespace

Chunk nextChunk(ByteCursor& bytes) {
    const std::uint32_t length = bytes.bigNumber();
    requireOfFile(length <= kLargestPngNumber, "a chunk has an impossible length");
    requireOfFile(length + std::uint64_t{8} <= bytes.left(), "it ends inside a chunk, or a chunk's length is wrong");
    const auto typeAndData = bytes.take(length + std::size_t{4});
    const uLong sum = crc32(0, typeAndData.data(), static_cast<uInt>(typeAndData.size()));
    const std::string_view type(reinterpret_cast<const char*>(typeAndData.data()), 4);
    requireOfFile(std::ranges::all_of(type, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }),
                  "a chunk has no proper type");
    requireOfFile(sum == bytes.bigNumber(), "the check sum of its chunk " + std::string(type) + " is wrong");
    return {type, typeAndData.subspan(4)};
}

void readText(const Chunk& chunk, Animation& animation) {
    if (chunk.type != "tEXt" && chunk.type != "zTXt" && chunk.type != "iTXt")
        return;
    std::span<const std::uint8_t> rest = chunk.data;
    const auto keyword = cutToZero(rest);
    if (!keyword || (*keyword != kRememberedKeyword && *keyword != "Comment"))
        return;
    const auto text = textAfterKeyword(chunk.type, rest);
    if (!text)
        return;
    if (*keyword == "Comment")
        animation.comment = *text;
    else
        animation.made = rememberedFrom(*text);
}

unsigned PngHeader::samples() const {
    switch (colour) {
    case kRgb:
        return 3;
    case kGreyAlpha:
        return 2;
    case kRgbAlpha:
        return 4;
    default:
        return 1;
    }
}

PngHeader readHeader(std::span<const std::uint8_t> data) {
    requireOfFile(data.size() == 13, "its header has a wrong length");
    ByteCursor bytes(data);
    PngHeader header;
    header.width = bytes.bigNumber();
    header.height = bytes.bigNumber();
    header.depth = bytes.byte();
    header.colour = bytes.byte();
    const unsigned compression = bytes.byte();
    const unsigned filters = bytes.byte();
    const unsigned interlacing = bytes.byte();
    header.isInterlaced = interlacing == 1;
    requireOfFile(header.width >= 1 && header.height >= 1, "its picture has no pixels");
    requireOfFile(header.width <= 65535 && header.height <= 65535, "its picture is larger than 65535 pixels a side");
    const unsigned d = header.depth;
    const bool isSmall = d == 1 || d == 2 || d == 4;
    const bool isAllowed =
        (header.colour == kGrey && (isSmall || d == 8 || d == 16)) ||
        (header.colour == kPalette && (isSmall || d == 8)) ||
        ((header.colour == kRgb || header.colour == kGreyAlpha || header.colour == kRgbAlpha) && (d == 8 || d == 16));
    requireOfFile(isAllowed, "its colours are stored in a way that does not exist");
    requireOfFile(compression == 0 && filters == 0 && interlacing <= 1, "it uses a method that does not exist");
    return header;
}

Picture readPicture(const PngHeader& header, const PngColours& colours, std::span<const std::uint8_t> packed) {
    std::uint64_t total = 0;
    for (const Pass& pass : passesOf(header))
        total += pass.bytes(header);
    requireOfFile(total <= kLargestPngNumber && total <= packed.size() * kLargestGrowth,
                  "a frame has fewer pixels than its size says");
    Bytes rows(total);
    const auto count = inflateInto(packed, rows);
    requireOfFile(count.has_value(), "a frame's pixels cannot be decompressed");
    requireOfFile(*count == total, "a frame has fewer pixels than its size says");

    const PixelReader reader(header, colours);
    Picture picture{header.width, header.height, std::vector<Pixel>(std::size_t{header.width} * header.height)};
    std::span<std::uint8_t> rest = rows;
    for (const Pass& pass : passesOf(header)) {
        const std::span<std::uint8_t> part = rest.first(pass.bytes(header));
        rest = rest.subspan(part.size());
        if (part.empty())
            continue;
        const std::size_t rowBytes = header.rowBytes(pass.width(header));
        unfilter(part, rowBytes, pass.height(header), std::max(1u, header.samples() * header.depth / 8));
        for (std::uint32_t y = 0; y < pass.height(header); ++y) {
            Samples samples(part.data() + y * (rowBytes + 1) + 1, header.depth);
            Pixel* row = picture.pixels.data() + std::size_t{pass.y + y * pass.stepY} * header.width;
            for (std::uint32_t x = pass.x; x < header.width; x += pass.stepX)
                row[x] = reader.next(samples);
        }
    }
    return picture;
}

} // namespace stage
