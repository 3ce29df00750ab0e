// The plugin's folder of settings, for tests: empty, or with a file of the test's own.
#pragma once

#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include <shlobj.h>
#include <windows.h>

namespace recording {

// A special folder's path without a backslash at its end.
inline std::string specialFolder(int identity) {
    char path[MAX_PATH] = "";
    SHGetSpecialFolderPathA(nullptr, path, identity, FALSE);
    return path;
}

// The plugin's folder below the application data. The person's own one is moved aside while the object lives.
class SettingsFolder {
public:
    explicit SettingsFolder(const std::optional<std::string>& settings) {
        if (GetFileAttributesA(aside_.c_str()) == INVALID_FILE_ATTRIBUTES)
            MoveFileA(path_.c_str(), aside_.c_str());
        else
            clear(); // left over from tests that were killed
        if (!settings)
            return;
        CreateDirectoryA(path_.c_str(), nullptr);
        std::ofstream(file(), std::ios::binary) << *settings;
    }
    SettingsFolder(const SettingsFolder&) = delete;
    SettingsFolder& operator=(const SettingsFolder&) = delete;
    ~SettingsFolder() {
        clear();
        MoveFileA(aside_.c_str(), path_.c_str());
    }

    std::string read() const {
        std::ifstream stream(file(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

    std::vector<std::string> names() const {
        std::vector<std::string> names;
        WIN32_FIND_DATAA found{};
        const HANDLE search = FindFirstFileA((path_ + "\\*").c_str(), &found);
        if (search == INVALID_HANDLE_VALUE)
            return names;
        do {
            if (found.cFileName[0] != '.')
                names.push_back(found.cFileName);
        } while (FindNextFileA(search, &found));
        FindClose(search);
        return names;
    }

private:
    std::string file() const { return path_ + "\\VELDRAN1.INI"; }
    void clear() const {
        for (const std::string& name : names())
            if (const std::string path = path_ + '\\' + name; !DeleteFileA(path.c_str()))
                RemoveDirectoryA(path.c_str());
        RemoveDirectoryA(path_.c_str());
    }

    std::string path_ = specialFolder(CSIDL_APPDATA) + "\\Korvel";
    std::string aside_ = path_ + " (moved aside by a test)";
};

} // namespace recording
