// Tells the formats apart; see the header.
#include "formats/animation_reader.h"

#include "base/failure.h"
#include "formats/gif/gif_reader.h"
#include "formats/png/mng_reader.h"
#include "formats/png/png_reader.h"

namespace stage {

AnimationFile readAnimation(std::span<const std::uint8_t> bytes, const ReadOptions& options) {
    if (isGif(bytes))
        return readGif(bytes, options);
    if (isPng(bytes))
        return readPng(bytes, options);
    if (isMng(bytes))
        return readMng(bytes, options);
    throw Failure(ExitCode::FileTrouble, "The file is neither a GIF nor a PNG nor an MNG file.");
}

} // namespace stage
