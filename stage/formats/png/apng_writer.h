// Writes an animated PNG: every frame is the part that changed, whole or with what stays left out, over what the frame
// before leaves behind, whichever is smallest.
#pragma once

#include "formats/animation_writer.h"

namespace stage {

// As writeAnimation.
bool writeApng(const Animation& animation, ByteSink& sink, const WriteProgress& progress);

} // namespace stage
