// The module handle and folder of the running plugin.
#include "base/windows/module.h"

namespace veldran {
namespace {

HINSTANCE instance = nullptr;

std::string& folder() {
    static std::string text;
    return text;
}

} // namespace

void setModuleInstance(HINSTANCE module) {
    instance = module;
}

HINSTANCE moduleInstance() {
    return instance;
}

void computePluginFolder() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(instance, path, MAX_PATH);
    const std::string file = path;
    const std::size_t end = file.find_last_of("\\/");
    folder() = end == std::string::npos ? std::string() : file.substr(0, end) + '\\';
}

const std::string& pluginFolder() {
    return folder();
}

} // namespace veldran
