// Where the configuration file stands, and how it is replaced without ever leaving half a file.
#include "settings/settings_store.h"

#include "base/owner.h"
#include "base/shell_folder.h"
#include "settings/settings_file.h"

#include <ctime>
#include <optional>
#include <string>

#include <windows.h>

namespace veldran {
namespace {

constexpr char kFolder[] = "Korvel\\";
constexpr char kFileName[] = "VELDRAN1.INI";
constexpr int kApplicationDataFolder = 26; // CSIDL_APPDATA
constexpr std::size_t kPathLimit = 260;
constexpr std::size_t kLargestFile = 64u << 20; // nobody's settings; a larger file is not read

void closeFile(HANDLE file) {
    CloseHandle(file);
}
// CreateFile's failure value is turned into null where the file is opened.
using File = Owner<HANDLE, closeFile>;

File openFile(const std::string& path, DWORD access, DWORD disposition) {
    const HANDLE file =
        CreateFileA(path.c_str(), access, FILE_SHARE_READ, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return File(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

// With a backslash at its end; empty when there is no such folder.
std::string settingsFolder() {
    const std::string folder = shellFolder(kApplicationDataFolder);
    return folder.empty() ? folder : folder + kFolder;
}

std::string settingsPath() {
    const std::string folder = settingsFolder();
    return folder.empty() ? folder : (folder + kFileName).substr(0, kPathLimit);
}

std::optional<std::string> readWholeFile(const std::string& path) {
    const File file = openFile(path, GENERIC_READ, OPEN_EXISTING);
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size) || static_cast<std::uint64_t>(size.QuadPart) > kLargestFile)
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD count = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr))
        return std::nullopt;
    bytes.resize(count);
    return bytes;
}

bool writeWholeFile(const std::string& path, const std::string& bytes) {
    const File file = openFile(path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD count = 0;
    return file && WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) &&
           count == bytes.size() && FlushFileBuffers(file.get());
}

// "Sat Nov 14 14:41:00 2026", English whatever the locale.
std::string localTimestamp() {
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    const char* text = local != nullptr ? std::asctime(local) : nullptr;
    return text != nullptr ? std::string(text).substr(0, 24) : std::string(24, ' ');
}

} // namespace

PlugInSettings& pluginSettings() {
    static PlugInSettings settings;
    return settings;
}

bool isShiftHeld() {
    // The queue's state is what the person's last input said; the asynchronous one also knows of keys that went down
    // while the host was busy.
    return ((GetKeyState(VK_SHIFT) | GetAsyncKeyState(VK_SHIFT)) & 0x8000) != 0;
}

void loadSettings() {
    if (isShiftHeld()) {
        pluginSettings().reset();
        return;
    }
    const std::string path = settingsPath();
    if (path.empty())
        return;
    if (const std::optional<std::string> file = readWholeFile(path))
        readSettings(*file, pluginSettings());
}

void saveSettings() {
    const std::string path = settingsPath();
    if (path.empty())
        return;
    CreateDirectoryA(settingsFolder().c_str(), nullptr);
    const std::string temporary = settingsFolder() + "VELDRAN1.TMP";
    if (!writeWholeFile(temporary, writeSettings(pluginSettings(), localTimestamp())) ||
        !MoveFileExA(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        DeleteFileA(temporary.c_str());
}

} // namespace veldran
