// MNG files from another hand, as they come and with their chunks mended.
#include "animation_files.h"
#include "mended_chunks.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> file(data, size);
    fuzz::readOrRefuse(file);
    fuzz::readOrRefuse(stage::mendedChunks(file));
    return 0;
}
