// The verb render: from options to files.
// Never uses or changes the person's saved settings.
#pragma once

#include "commands/arguments.h"
#include "commands/report.h"
#include "windows/plugin/plugin_library.h"

namespace stage {

// Throws Failure.
RenderReport render(const PluginLibrary& plugin, const RenderOptions& options);

} // namespace stage
