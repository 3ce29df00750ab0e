// Common dialogs; see the header.
#include "windows/main_window/file_dialogs.h"

#include "formats/animation_writer.h"
#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"

#include <commdlg.h>

#include <string>
#include <system_error>
#include <vector>

namespace stage {
namespace {

constexpr std::size_t kLongestPath = 32768; // letters, the most that Windows takes
constexpr wchar_t kOpenFilter[] = L"Animations and pictures\0*.gif;*.png;*.apng;*.mng\0All files\0*.*\0";

const wchar_t* saveFilter(OutputFormat format) {
    switch (format) {
    case OutputFormat::Gif:
        return L"GIF animation\0*.gif\0All files\0*.*\0";
    case OutputFormat::Apng:
        return L"APNG animation\0*.apng;*.png\0All files\0*.*\0";
    case OutputFormat::Mng:
        return L"MNG animation\0*.mng\0All files\0*.*\0";
    case OutputFormat::Png:
        break;
    }
    return L"Numbered PNG files\0*.png\0All files\0*.*\0";
}

OPENFILENAMEW request(HWND owner, const wchar_t* filter, std::vector<wchar_t>& name) {
    OPENFILENAMEW open{};
    open.lStructSize = sizeof(open);
    open.hwndOwner = owner;
    open.lpstrFilter = filter;
    open.lpstrFile = name.data();
    open.nMaxFile = static_cast<DWORD>(name.size());
    open.Flags = OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_EXPLORER;
    return open;
}

// The names of numbered files are not the one that the dialog asked about.
bool mayReplaceNumbered(HWND owner, const std::filesystem::path& pattern) {
    std::error_code ignored;
    const std::filesystem::path first = numberedFile(pattern, 0);
    if (!std::filesystem::exists(first, ignored))
        return true;
    const std::wstring text = first.filename().wstring() + L" and its successors already exist. Replace them?";
    const ModernLooks looks;
    return MessageBoxW(owner, text.c_str(), L"Stage", MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2) == IDYES;
}

} // namespace

std::optional<std::filesystem::path> askForFileToOpen(HWND owner) {
    const ModernLooks looks;
    std::vector<wchar_t> name(kLongestPath);
    OPENFILENAMEW open = request(owner, kOpenFilter, name);
    open.Flags |= OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    if (!GetOpenFileNameW(&open))
        return std::nullopt;
    return std::filesystem::path(name.data());
}

std::optional<std::filesystem::path> askForFileToSave(HWND owner, OutputFormat format,
                                                      const std::filesystem::path& suggested) {
    const ModernLooks looks;
    std::vector<wchar_t> name(kLongestPath);
    const std::wstring begin = std::filesystem::path(suggested).make_preferred().wstring();
    if (begin.size() < name.size())
        begin.copy(name.data(), begin.size());
    OPENFILENAMEW save = request(owner, saveFilter(format), name);
    const std::wstring extension = wideFromUtf8(formatExtension(format).substr(1));
    save.lpstrDefExt = extension.c_str();
    save.Flags |= OFN_PATHMUSTEXIST | (format == OutputFormat::Png ? 0U : DWORD{OFN_OVERWRITEPROMPT});
    if (!GetSaveFileNameW(&save))
        return std::nullopt;
    const std::filesystem::path file = name.data();
    if (format == OutputFormat::Png && !mayReplaceNumbered(owner, file))
        return std::nullopt;
    return file;
}

std::optional<Rgb> askForColour(HWND owner, Rgb first) {
    static COLORREF custom[16] = {};
    const ModernLooks looks;
    CHOOSECOLORW choose{};
    choose.lStructSize = sizeof(choose);
    choose.hwndOwner = owner;
    choose.rgbResult = RGB(first.red, first.green, first.blue);
    choose.lpCustColors = custom;
    choose.Flags = CC_RGBINIT | CC_FULLOPEN;
    if (!ChooseColorW(&choose))
        return std::nullopt;
    return Rgb{GetRValue(choose.rgbResult), GetGValue(choose.rgbResult), GetBValue(choose.rgbResult)};
}

Answer askToSave(HWND owner, const std::string& utf8) {
    const ModernLooks looks;
    switch (MessageBoxW(owner, wideFromUtf8(utf8).c_str(), L"Stage", MB_YESNOCANCEL | MB_ICONQUESTION)) {
    case IDYES:
        return Answer::Yes;
    case IDNO:
        return Answer::No;
    default:
        return Answer::Cancel;
    }
}

} // namespace stage
