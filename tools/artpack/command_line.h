// artpack's command line: which job, on which files.
// Never exits the process itself, so that a test can run it.
#pragma once

#include <ostream>
#include <span>
#include <string>

namespace artpack {

// Runs the command with the arguments that follow the program's name. Returns the exit code: 0 done; 1 the job failed,
// with one line about it on `errors`; 2 the arguments make no command, with the usage on `errors`.
int run(std::span<const std::string> arguments, std::ostream& errors);

} // namespace artpack
