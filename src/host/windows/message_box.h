// The program's own message box, and the general error texts.
#pragma once

#include "resources/resource_ids.h"

#include <cstdint>
#include <string>

#include <windows.h>

namespace veldran {

// Codes of the general error texts; the text is in the string table.
enum class ErrorCode : std::uint8_t {
    Ok = 0,
    OpeningFile,
    CorruptedFile,
    ReadingFile,
    Cancelled,
    UnsupportedFunction,
    Memory, // also when nothing more fitting is known
    Information,
    UnsupportedFormat,
    RenamingFile,
    CreatingFile,
    WritingFile,
    TooManyColours,
    UnsuitableImage,
    Resource,
    Library,
    Fatal,
};

// String table identities begin here.
inline constexpr UINT kErrorTextBase = ERROR_TEXT_BASE;

// Never empty: a missing text has a text of its own.
std::string errorText(ErrorCode code);

// Shows `text` modally with an OK button (dialog template "MessageBox"), owned by `owner`, sized to the text.
void showMessage(HWND owner, const std::string& text);
void showError(HWND owner, ErrorCode code);

} // namespace veldran
