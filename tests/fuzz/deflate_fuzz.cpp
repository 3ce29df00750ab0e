// The compressor of PNG, APNG and MNG files. Bytes: changes, what is compressed.
#include "fuzz_target.h"

#include "core/deflate.h"

#include <zlib.h>

using fuzz::mustHold;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes = fuzz::Input(data, size).lengthened(4);
    const std::vector<std::uint8_t> packed = stage::deflated(bytes);
    mustHold(packed.size() <= bytes.size() + 5 * (bytes.size() / 65535 + 1) + 6, "it is no longer than stored");
    std::vector<std::uint8_t> read(bytes.size() + 1);
    auto readSize = static_cast<uLongf>(read.size());
    mustHold(uncompress(read.data(), &readSize, packed.data(), static_cast<uLong>(packed.size())) == Z_OK,
             "zlib inflates it");
    read.resize(readSize);
    mustHold(read == bytes, "the bytes come back");
    return 0;
}
