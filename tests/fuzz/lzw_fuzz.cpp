// The LZW coding of GIF. Bytes: code size, how many indices, whether codes follow, or changes and indices.
#include "fuzz_target.h"

#include "core/lzw.h"

using namespace stage;
using fuzz::mustHold;

namespace {

// A bit of each byte says whether its pixel may be transparent as well; the others are its index.
void checkCoding(std::span<const std::uint8_t> bytes, unsigned size) {
    const auto transparent = static_cast<std::uint8_t>((1u << size) - 1);
    std::vector<std::uint8_t> indices;
    std::vector<std::uint8_t> isFree;
    for (const std::uint8_t byte : bytes) {
        indices.push_back(static_cast<std::uint8_t>(byte & transparent));
        isFree.push_back(byte >> 7);
    }
    const auto plain = expandLzw(compressLzw({indices}, size), size, indices.size());
    mustHold(plain == indices, "indices come back");
    const auto read = expandLzw(compressLzw({indices, isFree, transparent}, size), size, indices.size());
    mustHold(read && read->size() == indices.size(), "as many indices come back");
    for (std::size_t i = 0; i < indices.size(); ++i)
        mustHold((*read)[i] == indices[i] || (isFree[i] != 0 && (*read)[i] == transparent),
                 "an index comes back, or what may stand for it");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const unsigned codeSize = 1 + input.number(7);
    const std::size_t count = input.take<std::uint16_t>();
    if (input.number(1) == 0) {
        const auto indices = expandLzw(input.bytes(), codeSize, count);
        mustHold(!indices || indices->size() <= count, "no more indices come than were asked for");
    } else
        checkCoding(input.lengthened(16), std::max(codeSize, 2u));
    return 0;
}
