// The plugin's folder of settings, for tests: empty, or with a file of the test's own.
#pragma once

#include <algorithm>
#include <filesystem>
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
        std::error_code ignored;
        if (std::filesystem::exists(aside_))
            std::filesystem::remove_all(path_); // left over from tests that were killed
        else
            std::filesystem::rename(path_, aside_, ignored);
        if (!settings)
            return;
        std::filesystem::create_directory(path_);
        std::ofstream(file(), std::ios::binary) << *settings;
    }
    SettingsFolder(const SettingsFolder&) = delete;
    SettingsFolder& operator=(const SettingsFolder&) = delete;
    ~SettingsFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
        std::filesystem::rename(aside_, path_, ignored);
    }

    std::string read() const {
        std::ifstream stream(file(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

    // In the order of the alphabet.
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(path_, ignored))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

private:
    std::filesystem::path file() const { return path_ / "VELDRAN1.INI"; }

    std::filesystem::path path_ = specialFolder(CSIDL_APPDATA) + "\\Korvel";
    std::filesystem::path aside_ = path_.string() + " (moved aside by a test)";
};

} // namespace recording
