// stage: renders the plugin's animations from the command line.
// Knows the verbs only; everything else is in its own file.
#include "core/arguments.h"
#include "core/failure.h"
#include "core/report.h"
#include "windows/console.h"
#include "windows/plugin_library.h"
#include "windows/render.h"
#include "windows/wide_text.h"

namespace stage {
namespace {

void run(std::span<const std::string> words) {
    const Arguments arguments = parseArguments(words);
    if (arguments.verb == Verb::Help) {
        print(Stream::Output, usageText());
        return;
    }
    const PluginLibrary plugin = PluginLibrary::load(programFolder() / "veldran1_x64.dll");
    if (arguments.verb == Verb::List)
        print(Stream::Output, listText(plugin.catalog()));
    else
        render(plugin, arguments.render);
}

int report(ExitCode code, const std::string& message) {
    print(Stream::Error, "stage: " + message + (message.ends_with('\n') ? "" : "\n"));
    return static_cast<int>(code);
}

} // namespace
} // namespace stage

int wmain(int count, wchar_t** words) {
    using namespace stage;
    try {
        std::vector<std::string> arguments;
        for (int i = 1; i < count; ++i)
            arguments.push_back(utf8FromWide(words[i]));
        run(arguments);
        return static_cast<int>(ExitCode::Done);
    } catch (const Failure& failure) {
        return report(failure.code(), failure.what());
    } catch (const std::exception& failure) {
        return report(ExitCode::PluginFailed, failure.what());
    }
}
