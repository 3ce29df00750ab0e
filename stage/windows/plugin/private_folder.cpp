// Private folders are named after the process that made them and the moment it began, because process numbers return:
// "veldran-stage-<process, decimal>-<begin, hexadecimal>".
#include "windows/plugin/private_folder.h"

#include "base/failure.h"
#include "base/output_file.h"
#include "base/text.h"
#include "windows/system/handles.h"

#include <cstdio>
#include <system_error>

namespace stage {
namespace {

namespace fs = std::filesystem;

// Where the plugin looks for its own files below the application-data folder.
constexpr wchar_t kFolder[] = L"Korvel";
constexpr wchar_t kSettings[] = L"VELDRAN1.INI";
constexpr wchar_t kMarkers[] = L"VELDRAN1.MRK";

constexpr std::string_view kNameStart = "veldran-stage-";
constexpr std::size_t kBeginDigits = 16;

const fs::path* redirectedTo = nullptr;

fs::path temporaryFolder() {
    std::error_code error;
    fs::path folder = fs::temp_directory_path(error);
    if (error)
        throw Failure(ExitCode::FileTrouble, "There is no folder for temporary files: " + error.message() + ".");
    return folder;
}

// Empty when the process is no more.
std::string folderNameOf(DWORD process) {
    const Process handle(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, process));
    FILETIME begin{}, end{}, kernel{}, user{};
    if (!handle || WaitForSingleObject(handle.get(), 0) == WAIT_OBJECT_0 ||
        !GetProcessTimes(handle.get(), &begin, &end, &kernel, &user))
        return {};
    char name[64];
    std::snprintf(name, sizeof(name), "%s%lu-%08lx%08lx", kNameStart.data(), process, begin.dwHighDateTime,
                  begin.dwLowDateTime);
    return name;
}

// A process of another user cannot be looked into, but it is alive.
bool isAliveButClosed(DWORD process) {
    const Process handle(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process));
    return !handle && GetLastError() == ERROR_ACCESS_DENIED;
}

bool isStale(const std::string& name) {
    if (!name.starts_with(kNameStart))
        return false;
    const auto parts = split(std::string_view(name).substr(kNameStart.size()), '-');
    if (parts.size() != 2 || parts[1].size() != kBeginDigits ||
        parts[1].find_first_not_of("0123456789abcdef") != std::string_view::npos)
        return false;
    const auto process = parseNumber(parts[0]);
    return process && folderNameOf(*process) != name && !isAliveButClosed(*process);
}

void removeStaleFolders(const fs::path& parent) {
    std::error_code ignored;
    for (fs::directory_iterator entry(parent, ignored), end; entry != end; entry.increment(ignored)) {
        if (!isStale(utf8FromPath(entry->path().filename())))
            continue;
        std::error_code alsoIgnored; // another run may be removing it at this moment
        fs::remove_all(entry->path(), alsoIgnored);
    }
}

bool plainPathWorks(const fs::path& folder) {
    LPITEMIDLIST list = nullptr;
    if (FAILED(redirectedFolderLocation(nullptr, CSIDL_APPDATA, &list)))
        return false;
    char path[MAX_PATH];
    const bool told = SHGetPathFromIDListA(list, path) != FALSE;
    CoTaskMemFree(list);
    std::error_code ignored;
    return told && fs::equivalent(fs::path(path), folder, ignored);
}

std::string contentOf(const fs::path& file) {
    std::error_code ignored;
    return fs::exists(file, ignored) ? readFile(file) : std::string();
}

} // namespace

PrivateFolder::PrivateFolder(std::string_view settings, const std::optional<std::string>& markers) {
    const fs::path parent = temporaryFolder();
    removeStaleFolders(parent);
    const std::string name = folderNameOf(GetCurrentProcessId());
    if (name.empty()) // the folder itself would be taken, and removed at the end
        throw Failure(ExitCode::FileTrouble, "The system does not tell when this program began.");
    path_ = parent / name;
    try {
        makeFolder(path_ / kFolder);
        writeFile(path_ / kFolder / kSettings, settings);
        if (markers)
            writeFile(path_ / kFolder / kMarkers, *markers);
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
        throw;
    }
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

PluginFiles readPluginFiles(const fs::path& applicationData) {
    return {contentOf(applicationData / kFolder / kSettings), contentOf(applicationData / kFolder / kMarkers)};
}

HRESULT WINAPI redirectedFolderLocation(HWND owner, int folder, LPITEMIDLIST* list) {
    if ((folder & ~CSIDL_FLAG_MASK) != CSIDL_APPDATA)
        return SHGetSpecialFolderLocation(owner, folder, list);
    *list = redirectedTo == nullptr ? nullptr : ILCreateFromPathW(redirectedTo->c_str());
    return *list == nullptr ? E_FAIL : S_OK;
}

SettingsRedirection::SettingsRedirection(const PrivateFolder& folder) {
    redirectedTo = &folder.path();
    if (plainPathWorks(folder.path()))
        return;
    redirectedTo = nullptr;
    throw Failure(ExitCode::FileTrouble,
                  "The plugin cannot find the temporary folder \"" + utf8FromPath(folder.path()) +
                      "\", whose path is too long or has letters outside the system's code page. "
                      "Set the environment variable TMP to another folder.");
}

SettingsRedirection::~SettingsRedirection() {
    redirectedTo = nullptr;
}

} // namespace stage
