// Where the settings come from and go to; see the header.
#include "windows/plugin/plugin_dialog.h"

#include "base/failure.h"
#include "commands/settings_text.h"
#include "document/animation_recorder.h"
#include "windows/plugin/animation_build.h"
#include "windows/plugin/default_files.h"
#include "windows/plugin/host_session.h"
#include "windows/plugin/import_patch.h"
#include "windows/plugin/private_folder.h"
#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"

#include <shlobj.h>

namespace stage {
namespace {

// A private folder with what the file remembers, which the plugin takes for the application data.
class RecalledFolder {
public:
    RecalledFolder(const PluginLibrary& plugin, const Remembered& like, std::vector<std::string>& warnings)
        : folder_(settingsOf(plugin, like, warnings), markersOf(like)), redirection_(folder_),
          patch_(plugin.module(), "shell32.dll", "SHGetSpecialFolderLocation",
                 reinterpret_cast<void*>(redirectedFolderLocation), IfMissing::Refuse) {}

    const std::filesystem::path& path() const { return folder_.path(); }

private:
    static std::string settingsOf(const PluginLibrary& plugin, const Remembered& like,
                                  std::vector<std::string>& warnings) {
        RecalledSettings recalled = recalledSettings(plugin.catalog(), like.settings, systemFromUtf8);
        warnings.insert(warnings.end(), recalled.refusals.begin(), recalled.refusals.end());
        const auto row = effectRowIn(like.settings);
        if (!row)
            throw Failure(ExitCode::WrongUsage, "The file does not remember its effect.");
        return composeSettings({}, recalled.settings, plugin.catalog().findEffect(std::to_string(*row)).row);
    }

    static std::optional<std::string> markersOf(const Remembered& like) {
        return like.markers ? systemFromUtf8(*like.markers) : std::nullopt;
    }

    PrivateFolder folder_;
    SettingsRedirection redirection_;
    ImportPatch patch_;
};

std::filesystem::path applicationDataFolder() {
    wchar_t path[MAX_PATH] = L"";
    SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, FALSE);
    return path;
}

// The plugin writes its settings when its dialog closes.
Remembered rememberedIn(const std::filesystem::path& folder, const PluginLibrary& plugin, OutputFormat format) {
    const PluginFiles files = readPluginFiles(folder);
    const auto row = effectRowIn(files.settings);
    const Effect& effect = plugin.catalog().findEffect(std::to_string(row.value_or(0)));
    return rememberBuild(plugin, effect, format, files);
}

} // namespace

DialogResult runPluginDialog(const PluginLibrary& plugin, HWND owner, OutputFormat format,
                             const std::optional<Remembered>& like, const PluginDialogEvents& events) {
    DialogResult result;
    result.warnings = placeDefaultFiles(plugin.module(), format);
    std::optional<RecalledFolder> recalled;
    if (like)
        recalled.emplace(plugin, *like, result.warnings);

    const AnimationRecorder fresh(format == OutputFormat::Gif ? DelayUnit::Hundredths : DelayUnit::Milliseconds);
    AnimationRecorder recorder = fresh;
    HostEvents hostEvents;
    hostEvents.begins = [&] { recorder = fresh; };
    hostEvents.status = events.status;
    hostEvents.progress = events.progress;
    hostEvents.finished = [&](BuildButton button, bool succeeded) {
        if (!succeeded)
            return;
        Animation animation = recorder.finish();
        if (button == BuildButton::Build)
            result.animation = std::move(animation);
        else if (events.tested)
            events.tested(std::move(animation));
    };
    HostSession session(recorder, std::move(hostEvents), programFolder());
    HostParams params = session.parametersFor(format);
    {
        const SystemScaledDialogs scaling;
        plugin.build(owner, params);
    }
    if (!result.animation)
        session.rethrowFailure();
    else
        result.animation->made = rememberedIn(recalled ? recalled->path() : applicationDataFolder(), plugin, format);
    return result;
}

} // namespace stage
