// The shell's special folders.
#pragma once

#include <string>

namespace veldran {

// The folder's path in the system's code page with a backslash at its end; empty when the shell has none.
std::string shellFolder(int specialFolder);

} // namespace veldran
