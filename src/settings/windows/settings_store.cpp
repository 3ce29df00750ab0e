// Where the configuration file stands, and when it is read and written.
#include "settings/windows/settings_store.h"

#include "base/windows/file.h"
#include "settings/settings_file.h"

#include <ctime>
#include <optional>
#include <string>

#include <windows.h>

namespace veldran {
namespace {

constexpr char kFileName[] = "VELDRAN1.INI";
constexpr std::size_t kPathLimit = 260;

std::string settingsPath() {
    const std::string folder = personalFolder();
    return folder.empty() ? folder : (folder + kFileName).substr(0, kPathLimit);
}

// "Sat Nov 14 14:41:00 2026", English whatever the locale.
std::string localTimestamp() {
    const std::time_t now = std::time(nullptr);
    // Their results live in memory that the C run-time of Windows has for each thread.
    const std::tm* local = std::localtime(&now);                         // NOLINT(concurrency-mt-unsafe)
    const char* text = local != nullptr ? std::asctime(local) : nullptr; // NOLINT(concurrency-mt-unsafe)
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
    pluginSettings().reset();
    const std::string path = settingsPath();
    if (path.empty() || isShiftHeld())
        return;
    if (const std::optional<std::string> file = readWholeFile(path))
        readSettings(*file, pluginSettings());
}

void saveSettings() {
    const std::string path = settingsPath();
    if (!path.empty())
        replaceFile(path, writeSettings(pluginSettings(), localTimestamp()));
}

} // namespace veldran
