// The system's file dialog with a preview of sounds, and playing files with a word to the person when that fails.
#pragma once

#include "sound/windows/wave_player.h"

#include <string>

#include <windows.h>

#include <commdlg.h>

namespace veldran {

// Reads the file and plays it; `window` receives MM_WOM_DONE. False when that cannot be; a message has told why.
bool playSoundFile(HWND window, WavePlayer& player, const std::string& path);

// Runs the file dialog that `choice` describes with a preview button, a loop check box and the chosen sound's figures
// below its own controls. True when a file was chosen. Nothing plays any more when it returns.
bool openSoundFile(OPENFILENAMEA choice);

} // namespace veldran
