// Printing; see the header.
#include "windows/system/console.h"

#include "windows/system/wide_text.h"

#include <windows.h>

namespace stage {
namespace {

HANDLE handleOf(Stream stream) {
    return GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

} // namespace

void print(Stream stream, std::string_view utf8) {
    DWORD written = 0;
    if (isTerminal(stream)) {
        const std::wstring wide = wideFromUtf8(utf8);
        WriteConsoleW(handleOf(stream), wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
        return;
    }
    // A pipe may take less than it was offered.
    while (!utf8.empty() &&
           WriteFile(handleOf(stream), utf8.data(), static_cast<DWORD>(utf8.size()), &written, nullptr) && written > 0)
        utf8.remove_prefix(written);
}

bool isTerminal(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != FALSE;
}

} // namespace stage
