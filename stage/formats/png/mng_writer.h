// Writes an MNG animation of low complexity (MNG-LC): PNG pictures with their places and delays, no stored objects.
#pragma once

#include "formats/animation_writer.h"

namespace stage {

// As writeAnimation.
bool writeMng(const Animation& animation, ByteSink& sink, const WriteProgress& progress);

} // namespace stage
