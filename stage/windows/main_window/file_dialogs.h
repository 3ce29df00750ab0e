// The system's dialogs for files and colours.
#pragma once

#include "document/file_format.h"
#include "document/frame.h"
#include "windows/system/handles.h"

namespace stage {

// Nothing when the person cancelled.
std::optional<std::filesystem::path> askForFileToOpen(HWND owner);
// Asks before it answers the name of a file that is there. A name without an extension gets the format's.
std::optional<std::filesystem::path> askForFileToSave(HWND owner, OutputFormat format,
                                                      const std::filesystem::path& suggested);
std::optional<Rgb> askForColour(HWND owner, Rgb first);

enum class Answer { Yes, No, Cancel };
Answer askToSave(HWND owner, const std::string& utf8);

} // namespace stage
