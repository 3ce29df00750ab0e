// What a person reads when a library makes this process crash, in place of the system's own box.
#pragma once

namespace stage {

enum class CrashReport { StandardError, Box };

// From now on a crash ends the process with the exit code of a failing plugin, after a line that names the library.
void reportCrashes(CrashReport report);

} // namespace stage
