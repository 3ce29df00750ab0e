// The plugin's own module: where its resources are looked up and where its file stands.
#pragma once

#include <string>

#include <windows.h>

namespace veldran {

// Stored once when the library is loaded.
void setModuleInstance(HINSTANCE instance);
HINSTANCE moduleInstance();

// Drive and folder of the plugin file, ending in a backslash; computed at each invocation.
void computePluginFolder();
const std::string& pluginFolder();

} // namespace veldran
