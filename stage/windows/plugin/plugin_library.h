// The plugin's library: found beside this program, checked before anything of it is used.
// Never searches other folders, so that no foreign library of the same name is run.
#pragma once

#include "abi/plugin_abi.h"
#include "commands/effect_catalog.h"
#include "windows/system/handles.h"

#include <filesystem>

namespace stage {

// The folder that holds this program.
std::filesystem::path programFolder();

class PluginLibrary {
public:
    // Throws Failure(PluginFailed) when it is missing, is something else, or describes itself wrongly.
    static PluginLibrary load(const std::filesystem::path& file);

    HMODULE module() const { return module_.get(); }
    const EffectCatalog& catalog() const { return catalog_; }
    // Runs the plugin's modal dialog; answers when it is closed.
    bool build(HWND parent, HostParams& params) const { return doBuild_(parent, &params) != 0; }

private:
    Module module_;
    DoBuildFunction doBuild_ = nullptr;
    EffectCatalog catalog_;
};

} // namespace stage
