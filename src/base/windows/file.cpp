// Plain file calls behind one owner.
#include "base/windows/file.h"

#include "base/owner.h"
#include "base/windows/shell_folder.h"

#include <cstdint>

#include <windows.h>

namespace veldran {
namespace {

constexpr char kFolder[] = "Korvel\\";
constexpr int kApplicationDataFolder = 26; // CSIDL_APPDATA
constexpr std::uint64_t kLargestFile = 64u << 20;

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

bool writeWholeFile(const std::string& path, const std::string& bytes) {
    const File file = openFile(path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD count = 0;
    return file && WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) &&
           count == bytes.size() && FlushFileBuffers(file.get());
}

} // namespace

std::string personalFolder() {
    const std::string folder = shellFolder(kApplicationDataFolder);
    return folder.empty() ? folder : folder + kFolder;
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

bool replaceFile(const std::string& path, const std::string& bytes) {
    CreateDirectoryA(path.substr(0, path.rfind('\\') + 1).c_str(), nullptr);
    // Two editors at once do not share a temporary file.
    const std::string temporary = path + "." + std::to_string(GetCurrentProcessId());
    if (writeWholeFile(temporary, bytes) &&
        MoveFileExA(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    DeleteFileA(temporary.c_str());
    return false;
}

} // namespace veldran
