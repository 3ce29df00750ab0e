// Writes an animation as GIF89a: every frame is cut to what changed, and what did not change inside that is transparent
// where that makes the code shorter.
// More colours than a GIF can show are reduced to one palette for all frames; fewer are never touched.
#pragma once

#include "document/picture.h"
#include "formats/animation_writer.h"

namespace stage {

// As writeAnimation.
bool writeGif(const Animation& animation, const WriteOptions& options, ByteSink& sink, const WriteProgress& progress);

// A frame as a GIF shows it before colours are reduced: every pixel opaque or transparent.
Picture gifPicture(const Frame& frame, const WriteOptions& options);

} // namespace stage
