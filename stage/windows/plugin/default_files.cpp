// Each file is a resource of this program or of the plugin.
#include "windows/plugin/default_files.h"

#include "base/failure.h"
#include "base/output_file.h"
#include "windows/plugin/module_resource.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace stage {
namespace {

namespace fs = std::filesystem;

enum class Carrier { Stage, Plugin };

struct DefaultFile {
    Carrier carrier;
    const wchar_t* resource;
    const wchar_t* name;
};

constexpr DefaultFile kDefaultFiles[] = {
    {Carrier::Stage, L"DEFAULT_TEXT", L"Default.txt"},
    {Carrier::Plugin, L"DEFAULT_WAV", L"Default.wav"},
    {Carrier::Plugin, L"DEFAULT_JPG", L"Default.jpg"},
};

// Empty when the shell has no documents folder.
fs::path documentsFolder(OutputFormat format) {
    wchar_t path[MAX_PATH] = L"";
    if (!SHGetSpecialFolderPathW(nullptr, path, CSIDL_PERSONAL, FALSE))
        return {};
    return fs::path(path) / (format == OutputFormat::Gif ? L"My Tavolin 16 Documents" : L"My Merrowin 16 Documents");
}

// Written beside its place first: nobody reads half a file. What has come to stand there meanwhile stays.
void place(const fs::path& target, std::string_view content) {
    fs::path unfinished = target;
    unfinished += L"." + std::to_wstring(GetCurrentProcessId());
    makeFolder(target.parent_path());
    writeFile(unfinished, content);
    if (!MoveFileW(unfinished.c_str(), target.c_str()))
        DeleteFileW(unfinished.c_str());
}

} // namespace

std::vector<std::string> placeDefaultFiles(HMODULE plugin, OutputFormat format) {
    std::vector<std::string> failures;
    const fs::path folder = documentsFolder(format);
    for (const DefaultFile& file : kDefaultFiles) {
        std::error_code ignored;
        const std::string_view content =
            moduleResource(file.carrier == Carrier::Plugin ? plugin : nullptr, file.resource);
        if (folder.empty() || content.empty() || fs::exists(folder / file.name, ignored))
            continue;
        try {
            place(folder / file.name, content);
        } catch (const Failure& failure) {
            failures.push_back(failure.what());
        }
    }
    return failures;
}

bool isDefaultFile(std::string_view path, OutputFormat format) {
    const fs::path file = pathFromUtf8(std::string(path));
    return std::ranges::any_of(kDefaultFiles, [&](const DefaultFile& known) {
        const std::wstring place = (documentsFolder(format) / known.name).make_preferred().native();
        return CompareStringOrdinal(place.c_str(), -1, file.c_str(), -1, TRUE) == CSTR_EQUAL;
    });
}

} // namespace stage
