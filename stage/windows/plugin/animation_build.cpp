// Settings, private folder, hidden dialog, document; see the header.
#include "windows/plugin/animation_build.h"

#include "base/failure.h"
#include "commands/report.h"
#include "commands/settings_text.h"
#include "windows/plugin/default_files.h"
#include "windows/plugin/dialog_driver.h"
#include "windows/plugin/host_session.h"
#include "windows/plugin/import_patch.h"
#include "windows/system/com_apartment.h"
#include "windows/system/console.h"
#include "windows/system/wide_text.h"

namespace stage {
namespace {

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
void drivePlugin(const PluginLibrary& plugin, const BuildRequest& request, HostSession& session) {
    const int testButton = static_cast<int>(plugin.catalog().testButton());
    const Window parent(
        CreateWindowExW(0, L"STATIC", L"stage", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr));
    const DialogDriver driver(request.button == BuildButton::Test ? testButton : IDOK, testButton);
    HostParams params = session.parametersFor(request.format);
    const bool accepted = plugin.build(parent.get(), params);

    session.rethrowFailure();
    if (accepted && driver.messages().empty() && session.isFinished(request.button))
        return;
    std::string reason;
    for (const std::string& message : driver.messages())
        reason += (reason.empty() ? "" : "\n") + message;
    if (reason.empty())
        reason = accepted ? "The plugin closed its dialog without having built an animation."
                          : "The plugin refused to work with this program.";
    throw Failure(ExitCode::PluginFailed, reason);
}

// The lines of the markers' file, however they end.
std::string plainLines(std::string text) {
    std::erase(text, '\r');
    return text;
}

} // namespace

Remembered rememberBuild(const PluginLibrary& plugin, const Effect& effect, OutputFormat format,
                         const PluginFiles& files) {
    Remembered made;
    made.settings = settingsToRemember(plugin.catalog(), utf8FromSystem(files.settings), effect, format,
                                       [format](std::string_view file) { return isDefaultFile(file, format); });
    if (plugin.catalog().hasMarkers(effect))
        made.markers = plainLines(utf8FromSystem(files.markers));
    return made;
}

BuiltAnimation buildAnimation(const PluginLibrary& plugin, const BuildRequest& request, StageClock& clock) {
    clock.begin("Opening");
    const ComApartment apartment;
    AnimationRecorder recorder(request.format == OutputFormat::Gif ? DelayUnit::Hundredths : DelayUnit::Milliseconds);
    const PrivateFolder folder(request.settings, request.markers);
    const SettingsRedirection redirection(folder);
    const ImportPatch patch(plugin.module(), "shell32.dll", "SHGetSpecialFolderLocation",
                            reinterpret_cast<void*>(redirectedFolderLocation), IfMissing::Refuse);
    const ImportPatch keys(plugin.module(), "user32.dll", "GetKeyState", reinterpret_cast<void*>(keyStateButShift),
                           IfMissing::Ignore);
    const ImportPatch asyncKeys(plugin.module(), "user32.dll", "GetAsyncKeyState",
                                reinterpret_cast<void*>(asyncKeyStateButShift), IfMissing::Ignore);
    ProgressText progress(isTerminal(Stream::Error) ? ProgressStyle::RedrawnLine : ProgressStyle::PlainLines);
    HostEvents events;
    events.status = [&](const std::string& status) {
        clock.begin(status);
        printProgress(progress.showStatus(status));
    };
    events.finished = [&clock](BuildButton, bool) { clock.begin("Closing"); };
    events.progress = [&progress](std::uint64_t done, std::uint64_t total) {
        printProgress(progress.showProgress(done, total));
    };
    HostSession session(recorder, std::move(events), programFolder());
    BuiltAnimation built;
    built.warnings = placeDefaultFiles(plugin.module(), request.format);
    try {
        drivePlugin(plugin, request, session);
    } catch (...) {
        printProgress(progress.clear());
        throw;
    }
    printProgress(progress.clear());
    built.animation = recorder.finish();
    built.animation.made = rememberBuild(plugin, request.effect, request.format, readPluginFiles(folder.path()));
    return built;
}

} // namespace stage
