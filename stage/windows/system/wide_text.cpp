// Conversions of text; see the header.
#include "windows/system/wide_text.h"

#include <windows.h>

namespace stage {
namespace {

std::wstring widen(std::string_view text, UINT codePage) {
    const int length = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0)),
                      L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

// `replaced`, where it may be given, tells whether letters were missing in the code page.
std::string narrow(std::wstring_view wide, UINT codePage, DWORD flags, BOOL* replaced) {
    const int length = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(codePage, flags, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(codePage, flags, wide.data(), length, text.data(), size, nullptr, replaced);
    return text;
}

} // namespace

std::wstring wideFromUtf8(std::string_view utf8) {
    return widen(utf8, CP_UTF8);
}

std::string utf8FromWide(std::wstring_view wide) {
    return narrow(wide, CP_UTF8, 0, nullptr);
}

std::wstring wideFromSystem(std::string_view text) {
    return widen(text, CP_ACP);
}

std::string utf8FromSystem(std::string_view text) {
    return utf8FromWide(wideFromSystem(text));
}

std::optional<std::string> systemFromUtf8(std::string_view utf8) {
    if (GetACP() == CP_UTF8) // where this conversion may not report replaced letters, and none is missing
        return std::string(utf8);
    BOOL replaced = FALSE;
    std::string text = narrow(wideFromUtf8(utf8), CP_ACP, WC_NO_BEST_FIT_CHARS, &replaced);
    return replaced ? std::nullopt : std::optional(std::move(text));
}

} // namespace stage
