// One run of the plugin behind a hidden dialog: settings in, a document out.
// Never uses or changes the person's saved settings.
#pragma once

#include "commands/arguments.h"
#include "commands/stage_clock.h"
#include "document/animation.h"
#include "windows/plugin/plugin_library.h"
#include "windows/plugin/private_folder.h"

namespace stage {

struct BuildRequest {
    const Effect& effect;
    std::string settings;                    // the text of the plugin's configuration file, the effect among it
    std::optional<std::string> markers;      // lines of the markers' file; nothing: the plugin's first ones
    OutputFormat format = OutputFormat::Gif; // what kind of editor the plugin finds
    BuildButton button = BuildButton::Build;
};

struct BuiltAnimation {
    Animation animation; // with what it takes to make it again
    std::vector<std::string> warnings;
};

// Prints the progress; `clock` learns the stages, of which "Opening" and "Closing" are those of the dialog. Throws
// Failure.
BuiltAnimation buildAnimation(const PluginLibrary& plugin, const BuildRequest& request, StageClock& clock);

// What a file shall remember of a build of that effect, from what the plugin left behind.
Remembered rememberBuild(const PluginLibrary& plugin, const Effect& effect, OutputFormat format,
                         const PluginFiles& files);

} // namespace stage
