// From the dialog's choices to a finished animation in the host.
#pragma once

#include "abi/plugin_abi.h"

#include <cstdint>

#include <windows.h>

namespace veldran {

enum class BuildKind : std::uint8_t { Real, Test };

// Renders the chosen instrument, reduces the colours and delivers every frame to `host`, as a new document or a test.
// Runs to its end under the wait cursor. On failure one message has been shown, owned by `dialog`. In any case nothing
// of the build is left over, and "Alpha transparency" shows what it showed before.
bool buildAnimation(HWND dialog, HostParams* host, BuildKind kind);

} // namespace veldran
