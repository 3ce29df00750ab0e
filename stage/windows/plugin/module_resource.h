// Raw data among the resources of a program or library.
#pragma once

#include <string_view>

#include <windows.h>

namespace stage {

// The bytes of the RCDATA resource of that name, valid as long as the module is loaded; null is this program. Empty
// when there is none.
std::string_view moduleResource(HMODULE module, const wchar_t* name);

} // namespace stage
