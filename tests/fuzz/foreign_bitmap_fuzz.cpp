// Packed bitmaps from somebody else: those that hosts hand over and those that the bundled host takes from the plugin.
// Three readers take different kinds; where two take the same they must see the same.
#include "fuzz_target.h"

#include "base/failure.h"
#include "document/packed_bitmap.h"
#include "render/foreign_bitmap.h"
#include "render/image_view.h"

#include <optional>

using namespace veldran;
using fuzz::mustHold;

namespace {

using Pixels = std::vector<ForeignBitmap::Pixel>;

Pixels rowOf(const ForeignBitmap& bitmap, int y) {
    Pixels row(static_cast<std::size_t>(bitmap.width())), part(row.size() - row.size() / 2);
    bitmap.readRow(y, 0, row);
    bitmap.readRow(y, bitmap.width() / 2, part);
    mustHold(std::ranges::equal(part, std::span(row).last(part.size())), "a part of a row is that part");
    return row;
}

void compareWithView(const ConstImageView& view, const Pixels& row, int y) {
    for (int x = 0; x < view.width; ++x) {
        const std::uint8_t* colour = view.bits == 1 ? view.colourTable + 4 * (view.row(y)[x / 8] >> (7 - x % 8) & 1)
                                                    : colourBytes(view, view.pixel(x, y));
        mustHold(std::equal(colour, colour + 3, row[static_cast<std::size_t>(x)].begin()), "a pixel is seen alike");
    }
}

// The bundled host always takes a whole colour table.
std::optional<stage::Frame> unpacked(std::span<const std::uint8_t> block) {
    try {
        return stage::unpackBitmap(std::as_bytes(block), stage::OpacityByte::Unused);
    } catch (const stage::Failure& failure) {
        mustHold(failure.code() == stage::ExitCode::PluginFailed, "a damaged picture is the plugin's fault");
        return std::nullopt;
    }
}

void compareWithFrame(const stage::Frame& frame, const Pixels& row, int y) {
    const std::uint8_t* from = frame.pixels.data() + static_cast<std::size_t>(y) * frame.rowBytes();
    for (const ForeignBitmap::Pixel& pixel : row) {
        const stage::Rgb colour =
            frame.format == stage::PixelFormat::Indexed ? frame.palette[*from] : stage::Rgb{from[0], from[1], from[2]};
        mustHold(pixel[0] == colour.blue && pixel[1] == colour.green && pixel[2] == colour.red,
                 "the bundled host sees the same pixel");
        from += stage::bytesPerPixel(frame.format);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> block(data, size);
    const std::optional<ForeignBitmap> bitmap = ForeignBitmap::open(block);
    const std::optional<ConstImageView> view = viewPackedBitmap(block);
    const std::optional<stage::Frame> frame = unpacked(block);
    mustHold(bitmap || !view, "what is one of ours is no worse from somebody else");
    if (!bitmap)
        return 0;
    constexpr int kMostRows = 64; // a large picture takes long
    for (int y = 0; y < std::min(bitmap->height(), kMostRows); ++y) {
        const Pixels row = rowOf(*bitmap, y);
        if (view)
            compareWithView(*view, row, y);
        if (frame)
            compareWithFrame(*frame, row, y);
    }
    return 0;
}
