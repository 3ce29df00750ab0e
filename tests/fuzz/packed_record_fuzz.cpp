// Packed records of artwork, and the bitmaps in them. Bytes: room for the bitmap, whether a record or what is to be
// packed into one follows.
#include "fuzz_target.h"

#include "record_bytes.h"
#include "render/image_view.h"
#include "render/packed_record.h"

using namespace veldran;
using fuzz::mustHold;

namespace {

void checkView(std::span<const std::uint8_t> block) {
    const std::optional<ConstImageView> view = viewPackedBitmap(block);
    if (!view)
        return;
    const std::uint8_t* end = block.data() + block.size();
    for (int y = 0; y < view->height; ++y) {
        const std::uint8_t* row = view->row(y);
        mustHold(row >= block.data() && row + bitmapStride(view->width, view->bits) <= end, "rows lie in the block");
    }
    mustHold(view->colourTable == nullptr ||
                 view->colourTable + colourTableBytes(view->bits) <= view->row(view->height - 1),
             "the colour table lies before the rows");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    std::vector<std::uint8_t> target(input.take<std::uint16_t>());
    const bool isRecord = input.number(1) == 0;
    const std::span<const std::uint8_t> rest = input.bytes();
    const std::vector<std::uint8_t> packed = isRecord ? std::vector(rest.begin(), rest.end()) : makeRecord(rest);
    const bool unpacks = unpackRecord(packed, target);
    mustHold(!unpacks || unpackedSize(packed).has_value(), "a record that unpacks states its size");
    if (!isRecord) {
        mustHold(unpacks && unpackedSize(packed) == rest.size(), "a sound record unpacks");
        target.resize(std::min(target.size(), rest.size()));
        mustHold(std::ranges::equal(target, rest.first(target.size())), "what was packed arrives");
    }
    checkView(target);
    return 0;
}
