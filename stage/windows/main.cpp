// stage: a window for people, and a command line for scripts.
// Knows the verbs only; everything else is in its own file.
#include "base/failure.h"
#include "base/output_file.h"
#include "commands/arguments.h"
#include "commands/batch.h"
#include "commands/report.h"
#include "formats/animation_reader.h"
#include "windows/main_window/main_window.h"
#include "windows/plugin/crash_report.h"
#include "windows/plugin/plugin_library.h"
#include "windows/plugin/render.h"
#include "windows/system/console.h"
#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"
#include "windows/system/window_class.h"

#include <new>

namespace stage {
namespace {

std::filesystem::path pluginFile() {
    return programFolder() / "veldran1_x64.dll";
}

PluginLibrary loadPlugin() {
    return PluginLibrary::load(pluginFile());
}

void tell(const std::string& message) {
    print(Stream::Error, "stage: " + message + (message.ends_with('\n') ? "" : "\n"));
}

void renderAndReport(const PluginLibrary& plugin, const RenderOptions& options, ReportStyle style) {
    const RenderReport report = render(plugin, options);
    for (const std::string& warning : report.warnings)
        tell(warning);
    print(Stream::Output, style == ReportStyle::Json ? summaryJson(report) : summaryText(report));
}

// A failure of any kind as one that has an exit code.
Failure failureOf(const std::exception& exception) {
    if (const auto* failure = dynamic_cast<const Failure*>(&exception))
        return *failure;
    if (dynamic_cast<const std::bad_alloc*>(&exception) != nullptr)
        return {ExitCode::PluginFailed, "There is not enough memory."};
    return {ExitCode::PluginFailed, exception.what()};
}

void report(const Failure& failure, ReportStyle style) {
    tell(failure.what());
    if (style == ReportStyle::Json)
        print(Stream::Output, failureJson(failure));
}

RenderOptions renderOptionsOf(BatchLine line) {
    if (line.words.front() != "render")
        line.words.insert(line.words.begin(), "render");
    const Arguments arguments = parseArguments(line.words);
    if (arguments.verb != Verb::Render)
        throw Failure(ExitCode::WrongUsage, "The line asks for help, not for a render.");
    return arguments.render;
}

ExitCode batch(const PluginLibrary& plugin, const std::string& file, ReportStyle style) {
    const std::vector<BatchLine> lines = parseBatch(readFile(pathFromUtf8(file)));
    std::vector<BatchFailure> failures;
    for (const BatchLine& line : lines) {
        try {
            renderAndReport(plugin, renderOptionsOf(line), style);
        } catch (const std::exception& exception) {
            const Failure failure = failureOf(exception);
            report(failure, style);
            failures.push_back({line.number, failure.what()});
        }
    }
    print(Stream::Output,
          style == ReportStyle::Json ? batchJson(lines.size(), failures) : batchText(lines.size(), failures));
    return failures.empty() ? ExitCode::Done : ExitCode::BatchIncomplete;
}

void inspect(const std::string& name, ReportStyle style) {
    const std::string content = readFile(pathFromUtf8(name));
    const AnimationFile file = readAnimation({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
    print(Stream::Output, style == ReportStyle::Json ? inspectionJson(file, name, content.size())
                                                     : inspectionText(file, name, content.size()));
}

ExitCode run(const Arguments& arguments) {
    switch (arguments.verb) {
    case Verb::Help:
        print(Stream::Output, usageText(arguments.helpOn));
        break;
    case Verb::List:
        print(Stream::Output, listText(loadPlugin().catalog()));
        break;
    case Verb::Render:
        renderAndReport(loadPlugin(), arguments.render, arguments.report);
        break;
    case Verb::Batch:
        return batch(loadPlugin(), arguments.file, arguments.report);
    case Verb::Inspect:
        inspect(arguments.file, arguments.report);
        break;
    }
    return ExitCode::Done;
}

// Nothing is asked for, or only the name of a file that is there, as the desktop does for a file that is dropped on the
// program.
bool isForWindow(const std::vector<std::string>& words) {
    std::error_code ignored;
    return words.empty() || (words.size() == 1 && std::filesystem::is_regular_file(pathFromUtf8(words[0]), ignored));
}

// A console that was opened for this program alone has nothing to show.
void leaveOwnConsole() {
    DWORD processes[2];
    if (GetConsoleProcessList(processes, 2) == 1)
        FreeConsole();
}

int runWindow(const std::vector<std::string>& words) {
    leaveOwnConsole();
    reportCrashes(CrashReport::Box);
    declarePerMonitorScaling();
    try {
        MainWindow window(pluginFile());
        window.show();
        if (!words.empty())
            window.open(std::filesystem::absolute(pathFromUtf8(words[0])));
        window.run();
        return static_cast<int>(ExitCode::Done);
    } catch (const std::exception& exception) {
        showTrouble(nullptr, exception);
        return static_cast<int>(ExitCode::PluginFailed);
    }
}

} // namespace
} // namespace stage

int wmain(int count, wchar_t** words) {
    using namespace stage;
    std::vector<std::string> given;
    for (int i = 1; i < count; ++i)
        given.push_back(utf8FromWide(words[i]));
    if (isForWindow(given))
        return runWindow(given);
    reportCrashes(CrashReport::StandardError);
    ReportStyle style = ReportStyle::Text;
    try {
        const Arguments arguments = parseArguments(given);
        style = arguments.report;
        return static_cast<int>(run(arguments));
    } catch (const std::exception& exception) {
        const Failure failure = failureOf(exception);
        report(failure, style);
        return static_cast<int>(failure.code());
    }
}
