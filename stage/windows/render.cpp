// Rendering: settings, private folder, hidden dialog, files; see the header.
#include "windows/render.h"

#include "core/failure.h"
#include "core/setting_value.h"
#include "core/settings_text.h"
#include "windows/console.h"
#include "windows/default_files.h"
#include "windows/dialog_driver.h"
#include "windows/host_session.h"
#include "windows/import_patch.h"
#include "windows/private_folder.h"
#include "windows/wide_text.h"

#include <objbase.h>

#include <chrono>

namespace stage {
namespace {

// COM on this thread, for the shell and for decoding images.
class ComApartment {
public:
    ComApartment() : ready_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~ComApartment() {
        if (ready_)
            CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool ready_;
};

std::string settingsFor(const EffectCatalog& catalog, const RenderOptions& options, const Effect& effect) {
    std::vector<KeyValue> checked;
    for (const KeyValue& given : options.settings) {
        const Setting& setting = catalog.findSetting(given.key);
        if (setting.key == kEffectKey)
            throw Failure(ExitCode::WrongUsage, "The effect is chosen with --effect, not with --set.");
        checked.push_back({setting.key, checkedValue(setting, given.value, systemFromUtf8)});
    }
    const std::string base = options.iniFile ? readFile(pathFromUtf8(*options.iniFile)) : std::string();
    return composeSettings(base, checked, effect.row);
}

void refuseTrueColour(const EffectCatalog& catalog, const std::string& settings, const RenderOptions& options) {
    if (options.format != OutputFormat::Gif)
        return;
    if (const auto key = trueColourKey(catalog, settings, options.button))
        throw Failure(ExitCode::WrongUsage, "The setting " + *key + " is switched on. " + trueColourRefusal());
}

RecordingPlan planFor(const RenderOptions& options, const Effect& effect) {
    RecordingPlan plan;
    plan.format = options.format;
    plan.outFile = pathFromUtf8(options.outFile.value_or(defaultFileName(effect.name, options.format)));
    if (options.framesFolder)
        plan.framesFolder = pathFromUtf8(*options.framesFolder);
    return plan;
}

// Stand in for the system's functions inside the plugin, which takes a held Shift key for the wish to reset all
// settings: a person may be typing elsewhere while a script renders.
SHORT WINAPI keyStateButShift(int key) {
    return key == VK_SHIFT ? SHORT{0} : GetKeyState(key);
}
SHORT WINAPI asyncKeyStateButShift(int key) {
    return key == VK_SHIFT ? SHORT{0} : GetAsyncKeyState(key);
}

void printProgress(const std::string& text) {
    if (!text.empty())
        print(Stream::Error, text);
}

// Runs the plugin's dialog from opening to closing. Throws Failure unless an animation was finished.
void drivePlugin(const PluginLibrary& plugin, const RenderOptions& options, const Effect& effect,
                 HostSession& session) {
    const int testButton = static_cast<int>(plugin.catalog().testButton());
    const Window parent(
        CreateWindowExW(0, L"STATIC", L"stage", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr));
    const DialogDriver driver(options.button == BuildButton::Test ? testButton : IDOK, testButton);
    HostParams params = session.parametersFor(options.format);
    const bool accepted = plugin.build(parent.get(), params);

    session.rethrowFailure();
    if (accepted && driver.messages().empty() && session.isFinished(options.button))
        return;
    std::string reason;
    for (const std::string& message : driver.messages())
        reason += (reason.empty() ? "" : "\n") + message;
    if (reason.empty())
        reason = accepted ? "The plugin closed its dialog without having built an animation."
                          : "The plugin refused to work with this program.";
    if (effect.state == EffectState::Planned)
        reason += "\n\"" + effect.name + "\" is only planned: this version of the plugin cannot build it.";
    throw Failure(ExitCode::PluginFailed, reason);
}

} // namespace

void render(const PluginLibrary& plugin, const RenderOptions& options) {
    const auto begin = std::chrono::steady_clock::now();
    const Effect& effect = plugin.catalog().findEffect(options.effect);
    const std::string settings = settingsFor(plugin.catalog(), options, effect);
    refuseTrueColour(plugin.catalog(), settings, options);

    const ComApartment apartment;
    AnimationRecorder recorder(planFor(options, effect));
    const PrivateFolder folder(settings);
    const SettingsRedirection redirection(folder);
    const ImportPatch patch(plugin.module(), "shell32.dll", "SHGetSpecialFolderLocation",
                            reinterpret_cast<void*>(redirectedFolderLocation), IfMissing::Refuse);
    const ImportPatch keys(plugin.module(), "user32.dll", "GetKeyState", reinterpret_cast<void*>(keyStateButShift),
                           IfMissing::Ignore);
    const ImportPatch asyncKeys(plugin.module(), "user32.dll", "GetAsyncKeyState",
                                reinterpret_cast<void*>(asyncKeyStateButShift), IfMissing::Ignore);
    ProgressText progress(isTerminal(Stream::Error) ? ProgressStyle::RedrawnLine : ProgressStyle::PlainLines);
    HostSession session(recorder, progress, printProgress, programFolder());
    for (const std::string& warning : placeDefaultFiles(plugin.module(), options.format))
        print(Stream::Error, "stage: " + warning + "\n");
    try {
        drivePlugin(plugin, options, effect, session);
    } catch (...) {
        printProgress(progress.clear());
        throw;
    }
    printProgress(progress.clear());
    const Recording recording = recorder.finish();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    print(Stream::Output, summaryText(recording, options.format == OutputFormat::Gif ? 100 : 1000, taken.count()));
}

} // namespace stage
