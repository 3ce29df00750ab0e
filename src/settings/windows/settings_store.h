// The process-wide settings and the configuration file in the person's application-data folder.
#pragma once

#include "settings/settings_table.h"

namespace veldran {

// The settings of this process: built-in defaults until the file is read. One invocation of the plugin at a time.
PlugInSettings& pluginSettings();

// Whether a Shift key is held down at this moment. Held at invocation it sets everything back to its defaults.
bool isShiftHeld();

// Sets everything back to its built-in default and then applies "Korvel\VELDRAN1.INI" from the application-data folder,
// unless there is none or Shift is held.
void loadSettings();

// Writes the file: into a temporary file beside it, which then takes its place. Makes the folder when it is missing.
// What fails leaves the old file as it was; nobody is told.
void saveSettings();

} // namespace veldran
