// Finding and locking in one step.
#include "windows/plugin/module_resource.h"

namespace stage {

std::string_view moduleResource(HMODULE module, const wchar_t* name) {
    const HRSRC place = FindResourceW(module, name, MAKEINTRESOURCEW(10)); // 10: RT_RCDATA
    if (place == nullptr)
        return {};
    const HGLOBAL resource = LoadResource(module, place);
    const auto* bytes = resource == nullptr ? nullptr : static_cast<const char*>(LockResource(resource));
    return bytes == nullptr ? std::string_view{} : std::string_view(bytes, SizeofResource(module, place));
}

} // namespace stage
