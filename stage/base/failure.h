// What went wrong, in words for the person at the command line, and the exit code that tells a script.
// Never crosses the plugin's entry points: the host's message entry catches it and answers 0.
#pragma once

#include <stdexcept>
#include <string>

namespace stage {

enum class ExitCode : int { Done = 0, PluginFailed = 1, WrongUsage = 2, FileTrouble = 3, BatchIncomplete = 4 };

class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

// For what the plugin delivers: `message` is said when the condition does not hold.
inline void requireOfPlugin(bool condition, const char* message) {
    if (!condition)
        throw Failure(ExitCode::PluginFailed, message);
}

} // namespace stage
