// A folder of this run alone that stands in for the application-data folder while the plugin is driven.
// Never leaves anything in the person's own folders; what a killed run leaves behind, the next run removes.
#pragma once

#include <windows.h>

#include <shlobj.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace stage {

class PrivateFolder {
public:
    // Removes the folders of runs that are no more, then makes one holding `settings` as the plugin's configuration
    // file and, when given, the lines of `markers` as its markers' file. Throws Failure(FileTrouble).
    PrivateFolder(std::string_view settings, const std::optional<std::string>& markers);
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

// The plugin's two files below an application-data folder, as it left them: bytes of the system's code page, empty
// where there is no such file.
struct PluginFiles {
    std::string settings;
    std::string markers;
};
// Throws Failure(FileTrouble).
PluginFiles readPluginFiles(const std::filesystem::path& applicationData);

// Stands in for the shell's function of the same name inside the plugin: answers the private folder for the
// application-data folder, and the shell's own answer for all others. Only while a SettingsRedirection lives.
HRESULT WINAPI redirectedFolderLocation(HWND owner, int folder, LPITEMIDLIST* list);

// Names the folder that redirectedFolderLocation answers. One at a time.
class SettingsRedirection {
public:
    // Throws Failure(FileTrouble) when the folder's path cannot be told to the plugin in the system's code page.
    explicit SettingsRedirection(const PrivateFolder& folder);
    ~SettingsRedirection();
    SettingsRedirection(const SettingsRedirection&) = delete;
    SettingsRedirection& operator=(const SettingsRedirection&) = delete;
};

} // namespace stage
