// Tells the formats apart; see the header.
#include "core/animation_reader.h"

#include "core/failure.h"
#include "core/gif_reader.h"
#include "core/mng_reader.h"
#include "core/png_reader.h"

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
