// The verb render: from options to files.
// Never uses or changes the person's saved settings.
#pragma once

#include "core/arguments.h"
#include "windows/plugin_library.h"

namespace stage {

// Prints the summary when done. Throws Failure.
void render(const PluginLibrary& plugin, const RenderOptions& options);

} // namespace stage
