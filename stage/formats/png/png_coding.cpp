// PNG chunks over zlib; see the header.
#include "formats/png/png_coding.h"

#include "base/byte_sink.h"
#include "formats/png/deflate.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

namespace stage {
namespace {

constexpr std::size_t kColourCount = std::size_t{1} << 24;

// A zlib stream of one setting, used again and again: its tables are large.
class Deflater {
public:
    Deflater(int level, int strategy) {
        constexpr int kWindowBits = 15;
        constexpr int kMemoryLevel = 9;
        if (deflateInit2(&zip_, level, Z_DEFLATED, kWindowBits, kMemoryLevel, strategy) != Z_OK)
            throw std::bad_alloc();
    }
    ~Deflater() { deflateEnd(&zip_); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    PngBytes pack(std::span<const std::uint8_t> bytes) {
        deflateReset(&zip_);
        PngBytes result(deflateBound(&zip_, static_cast<uLong>(bytes.size())));
        zip_.next_in = const_cast<Bytef*>(bytes.data()); // zlib does not write there
        zip_.avail_in = static_cast<uInt>(bytes.size());
        zip_.next_out = result.data();
        zip_.avail_out = static_cast<uInt>(result.size());
        deflate(&zip_, Z_FINISH); // has room for all
        result.resize(zip_.total_out);
        return result;
    }

private:
    z_stream zip_{};
};

unsigned depthFor(std::size_t colours) {
    return colours <= 2 ? 1 : colours <= 4 ? 2 : colours <= 16 ? 4 : 8;
}

Pixel storedPixel(Pixel pixel, const PngLook& look) {
    return opacityOf(pixel) == 0 && look.hole ? *look.hole : pixel;
}

void putRow(std::uint8_t* to, std::span<const Pixel> row, const PngLook& look) {
    unsigned shift = 8;
    for (const Pixel pixel : row) {
        const Pixel stored = storedPixel(pixel, look);
        switch (look.colour) {
        case PngColour::Palette:
            shift -= look.bitDepth;
            *to = static_cast<std::uint8_t>(*to | *look.entries.find(stored) << shift);
            if (shift == 0) {
                shift = 8;
                ++to;
            }
            break;
        case PngColour::Grey:
            *to++ = rgbOf(stored).red;
            break;
        case PngColour::Rgb:
        case PngColour::RgbAlpha:
            for (unsigned i = 0; i < look.bitsPerPixel(); i += 8)
                *to++ = static_cast<std::uint8_t>(stored >> i);
            break;
        }
    }
}

PngBytes rowsOf(const Picture& picture, const PngLook& look) {
    const std::size_t rowBytes = look.rowBytes(picture.width);
    PngBytes rows(rowBytes * picture.height);
    for (std::size_t y = 0; y < picture.height; ++y)
        putRow(rows.data() + y * rowBytes, std::span(picture.pixels).subspan(y * picture.width, picture.width), look);
    return rows;
}

// The filters of the PNG standard: a byte becomes its difference from what its neighbours foretell.
enum Filter : std::uint8_t { kNone, kSub, kUp, kAverage, kPaeth };
constexpr std::array kFilters = {kNone, kSub, kUp, kAverage, kPaeth};

struct Rows {
    const PngBytes& bytes;
    std::size_t rowBytes;
    std::size_t step; // bytes from a pixel to the one on its left; at least 1

    std::size_t count() const { return bytes.size() / rowBytes; }
};

void filterRow(const Rows& rows, std::size_t y, Filter filter, std::uint8_t* to) {
    const std::uint8_t* here = rows.bytes.data() + y * rows.rowBytes;
    for (std::size_t x = 0; x < rows.rowBytes; ++x) {
        const int left = x >= rows.step ? here[x - rows.step] : 0;
        const int above = y > 0 ? *(here + x - rows.rowBytes) : 0;
        const int corner = x >= rows.step && y > 0 ? *(here + x - rows.rowBytes - rows.step) : 0;
        int foretold = 0;
        switch (filter) {
        case kNone:
            break;
        case kSub:
            foretold = left;
            break;
        case kUp:
            foretold = above;
            break;
        case kAverage:
            foretold = (left + above) / 2;
            break;
        case kPaeth: {
            const int toLeft = std::abs(above - corner);
            const int toAbove = std::abs(left - corner);
            const int toCorner = std::abs(left + above - 2 * corner);
            foretold = toLeft <= toAbove && toLeft <= toCorner ? left : toAbove <= toCorner ? above : corner;
            break;
        }
        }
        to[x] = static_cast<std::uint8_t>(here[x] - foretold);
    }
}

PngBytes filtered(const Rows& rows, Filter filter) {
    PngBytes result(rows.bytes.size() + rows.count());
    for (std::size_t y = 0; y < rows.count(); ++y) {
        std::uint8_t* to = result.data() + y * (rows.rowBytes + 1);
        *to = filter;
        filterRow(rows, y, filter, to + 1);
    }
    return result;
}

// Row by row the filter whose differences are smallest as signed bytes: a guess of what compresses best.
PngBytes filteredBySum(const Rows& rows) {
    PngBytes result;
    result.reserve(rows.bytes.size() + rows.count());
    PngBytes row(rows.rowBytes);
    PngBytes best;
    for (std::size_t y = 0; y < rows.count(); ++y) {
        std::uint64_t smallest = ~std::uint64_t{0};
        Filter chosen = kNone;
        for (const Filter filter : kFilters) {
            filterRow(rows, y, filter, row.data());
            std::uint64_t sum = 0;
            for (const std::uint8_t byte : row)
                sum += byte < 128 ? byte : 256u - byte;
            if (sum < smallest) {
                smallest = sum;
                chosen = filter;
                best = row;
            }
        }
        result.push_back(chosen);
        result.insert(result.end(), best.begin(), best.end());
    }
    return result;
}

} // namespace

void putPngNumber(PngBytes& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

void putPngShort(PngBytes& bytes, std::uint32_t number) {
    bytes.push_back(static_cast<std::uint8_t>(number >> 8));
    bytes.push_back(static_cast<std::uint8_t>(number));
}

void putChunk(PngBytes& bytes, std::string_view type, std::span<const std::uint8_t> data) {
    putPngNumber(bytes, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = bytes.size();
    bytes.insert(bytes.end(), type.begin(), type.end());
    bytes.insert(bytes.end(), data.begin(), data.end());
    const uLong sum = crc32(0, bytes.data() + start, static_cast<uInt>(bytes.size() - start));
    putPngNumber(bytes, static_cast<std::uint32_t>(sum));
}

// International text, compressed where that is shorter: keyword, whether compressed, method 0, no language, no
// translated keyword.
static void putText(PngBytes& bytes, std::string_view keyword, std::string_view text) {
    const PngBytes packed = Deflater(Z_BEST_COMPRESSION, Z_DEFAULT_STRATEGY).pack(bytesOf(text));
    const bool compressed = packed.size() < text.size();
    PngBytes data(keyword.begin(), keyword.end());
    data.insert(data.end(), {0, static_cast<std::uint8_t>(compressed ? 1 : 0), 0, 0, 0});
    const std::span<const std::uint8_t> content = compressed ? std::span<const std::uint8_t>(packed) : bytesOf(text);
    data.insert(data.end(), content.begin(), content.end());
    putChunk(bytes, "iTXt", data);
}

void putTexts(PngBytes& bytes, std::string_view comment, const std::optional<Remembered>& made) {
    if (!comment.empty()) {
        std::string lines(comment);
        std::erase(lines, '\r'); // PNG text has line feeds alone
        putText(bytes, "Comment", lines);
    }
    if (made)
        putText(bytes, kRememberedKeyword, rememberedText(*made));
}

unsigned PngLook::bitsPerPixel() const {
    switch (colour) {
    case PngColour::Palette:
        return bitDepth;
    case PngColour::Grey:
        return 8;
    case PngColour::Rgb:
        return 24;
    case PngColour::RgbAlpha:
        break;
    }
    return 32;
}

void PngSurvey::add(const Picture& picture) {
    for (const Pixel pixel : picture.pixels) {
        const Rgb colour = rgbOf(pixel);
        hasHoles_ = hasHoles_ || pixel == kTransparentPixel;
        hasHalfOpaque_ = hasHalfOpaque_ || (pixel != kTransparentPixel && opacityOf(pixel) != 255);
        isGrey_ = isGrey_ && colour.red == colour.green && colour.red == colour.blue;
    }
    if (!colours_.isOverLimit())
        colours_.add(picture.pixels);
    if (!colours_.isOverLimit())
        return;
    if (used_.empty()) {
        used_.resize(kColourCount);
        for (const auto& entry : colours_.counts())
            if (opacityOf(entry.first) != 0)
                used_[entry.first % kColourCount] = true;
    }
    for (const Pixel pixel : picture.pixels)
        if (opacityOf(pixel) != 0)
            used_[pixel % kColourCount] = true;
}

// Greys need no palette, and their neighbours foretell them; few of them are shorter as entries.
bool PngSurvey::suitsGrey() const {
    constexpr std::size_t kFewGreys = 16;
    return fitsPalette() && isGrey_ && !hasHoles_ && !hasHalfOpaque_ && colours_.size() > kFewGreys;
}

PngLook PngSurvey::paletteLook(Hole hole) const {
    PngLook look;
    look.colour = PngColour::Palette;
    look.palette = colours_.byFrequency();
    if (hasHoles_ || hole == Hole::Always)
        look.hole = kTransparentPixel;
    if (!hasHoles_ && hole == Hole::Always)
        look.palette.push_back(kTransparentPixel);
    look.bitDepth = depthFor(look.palette.size());
    std::stable_partition(look.palette.begin(), look.palette.end(),
                          [](Pixel pixel) { return opacityOf(pixel) != 255; });
    for (std::size_t i = 0; i < look.palette.size(); ++i)
        look.entries[look.palette[i]] = static_cast<std::uint8_t>(i);
    return look;
}

PngLook PngSurvey::greyLook(Hole hole) const {
    PngLook look;
    look.colour = PngColour::Grey;
    for (std::uint32_t level = 0; level < 256 && hole == Hole::Always && !look.hole; ++level) {
        const auto grey = static_cast<std::uint8_t>(level);
        if (colours_.counts().find(pixelOf({grey, grey, grey})) == nullptr)
            look.hole = pixelOf({grey, grey, grey});
    }
    return look;
}

PngLook PngSurvey::colourLook(Hole hole) const {
    PngLook look;
    const bool wantsHole = hasHoles_ || hole == Hole::Always;
    if (!hasHalfOpaque_ && wantsHole)
        look.hole = unusedColour();
    if (!hasHalfOpaque_ && (!hasHoles_ || look.hole))
        look.colour = PngColour::Rgb;
    else
        look.hole = kTransparentPixel;
    return look;
}

std::optional<Pixel> PngSurvey::unusedColour() const {
    for (std::size_t i = 0; i < kColourCount; ++i) {
        const auto pixel = static_cast<Pixel>(i | 0xFF000000u);
        if (fitsPalette() ? colours_.counts().find(pixel) == nullptr : !used_[i])
            return pixel;
    }
    return std::nullopt;
}

PngLook PngSurvey::look() const {
    return suitsGrey() ? greyLook(Hole::IfUsed) : fitsPalette() ? paletteLook(Hole::IfUsed) : colourLook(Hole::IfUsed);
}

std::vector<PngLook> PngSurvey::looksForChanges() const {
    constexpr std::size_t kFullPalette = 256;
    if (!fitsPalette())
        return {colourLook(Hole::Always)};
    if (suitsGrey() && colours_.size() < kFullPalette)
        return {greyLook(Hole::Always)};
    const std::size_t count = colours_.size();
    if (hasHoles_)
        return {paletteLook(Hole::IfUsed)};
    if (depthFor(count) == depthFor(count + 1) && count < kFullPalette)
        return {paletteLook(Hole::Always)};
    // The entry for what stays would make all pixels larger. With an opacity they are larger by a sixteenth than with
    // one colour that stands for it, but some decoders overlook that colour outside palettes.
    PngLook opacity;
    opacity.hole = kTransparentPixel;
    return {paletteLook(Hole::IfUsed), count < kFullPalette ? paletteLook(Hole::Always) : opacity};
}

void putHeaderChunk(PngBytes& bytes, std::string_view type, std::uint32_t width, std::uint32_t height,
                    const PngLook& look) {
    PngBytes data;
    putPngNumber(data, width);
    putPngNumber(data, height);
    // Deflate, the five filters, not interlaced.
    data.insert(data.end(),
                {static_cast<std::uint8_t>(look.bitDepth), static_cast<std::uint8_t>(look.colour), 0, 0, 0});
    putChunk(bytes, type, data);
}

void putPaletteChunk(PngBytes& bytes, const PngLook& look) {
    if (look.colour != PngColour::Palette)
        return;
    PngBytes colours;
    for (const Pixel entry : look.palette) {
        const Rgb colour = rgbOf(entry);
        colours.insert(colours.end(), {colour.red, colour.green, colour.blue});
    }
    putChunk(bytes, "PLTE", colours);
}

void putTransparencyChunk(PngBytes& bytes, const PngLook& look) {
    PngBytes transparency;
    for (const Pixel entry : look.palette)
        if (opacityOf(entry) != 255)
            transparency.push_back(opacityOf(entry));
    if (look.hole && (look.colour == PngColour::Grey || look.colour == PngColour::Rgb)) {
        const Rgb colour = rgbOf(*look.hole);
        putPngShort(transparency, colour.red);
        if (look.colour == PngColour::Rgb) {
            putPngShort(transparency, colour.green);
            putPngShort(transparency, colour.blue);
        }
    }
    if (!transparency.empty())
        putChunk(bytes, "tRNS", transparency);
}

PngBytes packedRows(const Picture& picture, const PngLook& look, PngEffort effort) {
    constexpr int kQuick = 4;
    thread_local Deflater quick(kQuick, Z_DEFAULT_STRATEGY);
    const PngBytes bytes = rowsOf(picture, look);
    const Rows rows{bytes, look.rowBytes(picture.width), std::max<std::size_t>(1, look.bitsPerPixel() / 8)};
    if (effort == PngEffort::Estimate) {
        PngBytes plain = quick.pack(filtered(rows, kNone));
        PngBytes bySum = look.colour == PngColour::Palette ? plain : quick.pack(filteredBySum(rows));
        return bySum.size() < plain.size() ? bySum : plain;
    }
    PngBytes chosen = filteredBySum(rows);
    std::size_t smallest = quick.pack(chosen).size();
    for (const Filter filter : kFilters) {
        PngBytes candidate = filtered(rows, filter);
        const std::size_t size = quick.pack(candidate).size();
        if (size < smallest) {
            smallest = size;
            chosen = std::move(candidate);
        }
    }
    return deflated(chosen);
}

PngBytes encodePng(const Frame& frame, std::string_view comment, const std::optional<Remembered>& made) {
    const Picture picture = pictureOf(frame);
    PngSurvey survey;
    survey.add(picture);
    const PngLook look = survey.look();
    PngBytes bytes(std::begin(kPngSignature), std::end(kPngSignature));
    putHeaderChunk(bytes, "IHDR", picture.width, picture.height, look);
    putPaletteChunk(bytes, look);
    putTransparencyChunk(bytes, look);
    putTexts(bytes, comment, made);
    putChunk(bytes, "IDAT", packedRows(picture, look, PngEffort::Best));
    putChunk(bytes, "IEND", {});
    return bytes;
}

} // namespace stage
