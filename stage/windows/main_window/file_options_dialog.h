// The dialog for what a file says of the whole animation: how often it plays, and what becomes of a GIF's half
// transparent pixels.
#pragma once

#include "formats/animation_writer.h"
#include "windows/system/handles.h"

namespace stage {

struct FileOptions {
    std::uint32_t plays = 0; // 0: forever
    WriteOptions write;
};

// Nothing when the person cancelled.
std::optional<FileOptions> askForFileOptions(HWND owner, const FileOptions& first);

} // namespace stage
