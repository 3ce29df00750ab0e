// Decodes image files for the plugin, which knows no file formats of its own.
// Never hands out a block that it still owns.
#pragma once

#include "windows/system/handles.h"

#include <string>

namespace stage {

// A movable block with a packed bottom-up bitmap: 32 bits per pixel when a pixel of the picture is not opaque, else 24.
// Empty when the file cannot be read as a picture. COM must be ready on the thread.
GlobalBlock loadImage(const std::wstring& path);

} // namespace stage
