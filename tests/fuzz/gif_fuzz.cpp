// GIF files from another hand.
#include "animation_files.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::readOrRefuse({data, size});
    return 0;
}
