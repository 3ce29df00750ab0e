// The coders behind the writers: LZW of GIF, deflate of PNG, APNG and MNG. Bytes: code size, which coder, changes, what
// is coded.
#include "fuzz_target.h"

#include "formats/gif/lzw.h"
#include "formats/png/deflate.h"

#include <zlib.h>

using namespace stage;
using fuzz::mustHold;

namespace {

using Bytes = std::vector<std::uint8_t>;

void checkDeflating(const Bytes& bytes) {
    const Bytes packed = deflated(bytes);
    mustHold(packed.size() <= bytes.size() + 5 * (bytes.size() / 65535 + 1) + 6, "it is no longer than stored");
    Bytes read(bytes.size() + 1);
    auto readSize = static_cast<uLongf>(read.size());
    mustHold(uncompress(read.data(), &readSize, packed.data(), static_cast<uLong>(packed.size())) == Z_OK,
             "zlib inflates it");
    read.resize(readSize);
    mustHold(read == bytes, "the bytes come back");
}

// A bit of each byte says whether its pixel may be transparent as well; the others are its index.
void checkCoding(std::span<const std::uint8_t> bytes, unsigned size) {
    const auto transparent = static_cast<std::uint8_t>((1u << size) - 1);
    Bytes indices, isFree;
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
    const unsigned codeSize = 2 + input.number(6);
    if (input.number(1) == 0)
        checkDeflating(input.lengthened(4));
    else
        checkCoding(input.lengthened(16), codeSize);
    return 0;
}
