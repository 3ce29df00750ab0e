// Loading and checking of the plugin; see the header.
#include "windows/plugin/plugin_library.h"

#include "base/failure.h"
#include "base/output_file.h"
#include "windows/plugin/module_resource.h"

#include <cstring>
#include <system_error>

namespace stage {
namespace {

constexpr std::string_view kPluginName = "Voltane #1";

[[noreturn]] void refuse(const std::filesystem::path& file, const std::string& reason) {
    throw Failure(ExitCode::PluginFailed, "\"" + utf8FromPath(file) + "\" " + reason + ".");
}

template <class Function>
Function findExport(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

bool describesItself(GetPluginParamsFunction getParams) {
    PluginInfo info{};
    info.size = sizeof(info);
    if (getParams(&info) == 0)
        return false;
    const std::string_view name(info.name, strnlen(info.name, sizeof(info.name)));
    return name == kPluginName && (info.version >> 8 & 0xFF) == kPluginInterfaceVersion >> 8;
}

} // namespace

std::filesystem::path programFolder() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return std::filesystem::path(path).parent_path();
        }
        path.resize(path.size() * 2);
    }
}

PluginLibrary PluginLibrary::load(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        refuse(file, "is missing: the plugin must stand beside this program");
    PluginLibrary plugin;
    plugin.module_ = Module(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!plugin.module_)
        refuse(file, "cannot be loaded: " + std::system_category().message(static_cast<int>(GetLastError())));
    const auto getParams = findExport<GetPluginParamsFunction>(plugin.module(), "PLUGIN16GetPluginParams");
    plugin.doBuild_ = findExport<DoBuildFunction>(plugin.module(), "PLUGIN16DoBuild");
    if (getParams == nullptr || plugin.doBuild_ == nullptr)
        refuse(file, "is not a plugin: it lacks the entry points");
    if (!describesItself(getParams))
        refuse(file, "is another plugin, or one of another interface version");
    const std::string_view text = moduleResource(plugin.module(), L"EFFECTS");
    if (text.empty())
        refuse(file, "has no list of its effects");
    plugin.catalog_ = EffectCatalog::parse(text);
    return plugin;
}

} // namespace stage
