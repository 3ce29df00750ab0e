// How much the long tests do: a spread of it with each change, or all.
#pragma once

#include <cstdlib>
#include <string_view>

// Whether VELDRAN_TESTS=all stands in the environment.
inline bool testsAreThorough() {
    const char* extent = std::getenv("VELDRAN_TESTS");
    return extent != nullptr && std::string_view(extent) == "all";
}
