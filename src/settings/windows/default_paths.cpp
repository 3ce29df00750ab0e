// One table: which setting, which file.
#include "settings/windows/default_paths.h"

#include "abi/plugin_abi.h"
#include "base/windows/shell_folder.h"

#include <string>

namespace veldran {
namespace {

constexpr int kDocumentsFolder = 5; // CSIDL_PERSONAL

struct DefaultFile {
    Setting setting;
    const char* fileName;
};

constexpr DefaultFile kDefaultFiles[] = {
    {Setting::MainVUDigVertSound, "Default.wav"},      {Setting::MainVUDigHorzSound, "Default.wav"},
    {Setting::MainVUAnalogSquareSound, "Default.wav"}, {Setting::MainVUAnalogRoundSound, "Default.wav"},
    {Setting::MainMagicEyeSound, "Default.wav"},       {Setting::MainSonicSound, "Default.wav"},
    {Setting::MainVoiceSound, "Default.wav"},          {Setting::MainSpectrumSound, "Default.wav"},
    {Setting::MainDatapadTextFile, "Default.txt"},     {Setting::MainBarGraphImageFile, "Default.jpg"},
};

std::string documentsPath(std::uint32_t hostFlags) {
    std::string folder = shellFolder(kDocumentsFolder);
    if (folder.empty())
        return folder;
    const bool pngEditor = (hostFlags & kHostIsPngEditor) != 0;
    return folder + (pngEditor ? "My Merrowin 16 Documents\\" : "My Tavolin 16 Documents\\");
}

} // namespace

void fillDefaultPaths(PlugInSettings& settings, std::uint32_t hostFlags, DefaultPaths which) {
    const std::string folder = documentsPath(hostFlags);
    for (const DefaultFile& file : kDefaultFiles)
        if (which == DefaultPaths::Everywhere || settings.text(file.setting).empty())
            settings.setText(file.setting, folder + file.fileName);
}

} // namespace veldran
