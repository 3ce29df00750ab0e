// The plugin's dialog as a person sees and uses it, from the window: an animation comes out when Build is pressed.
#pragma once

#include "document/animation.h"
#include "document/file_format.h"
#include "windows/plugin/plugin_library.h"

#include <functional>

namespace stage {

struct PluginDialogEvents {
    std::function<void(const std::string& utf8)> status;
    std::function<void(std::uint64_t done, std::uint64_t total)> progress; // (0, 0): nothing to show
    std::function<void(Animation animation)> tested; // to be looked at while the dialog stays open
};

struct DialogResult {
    std::optional<Animation> animation; // with what it takes to make it again; nothing: closed without Build
    std::vector<std::string> warnings;
};

// Runs the dialog until it is closed. It begins with the person's own settings, and keeps what is chosen; or, with
// `like`, as it was when such an animation was made, and the person's own settings stay as they are. `format` decides
// what kind of editor the plugin finds. COM must be ready on the thread. Throws Failure.
DialogResult runPluginDialog(const PluginLibrary& plugin, HWND owner, OutputFormat format,
                             const std::optional<Remembered>& like, const PluginDialogEvents& events);

} // namespace stage
