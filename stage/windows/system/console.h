// Prints UTF-8 text to the standard streams: as letters on a console, as bytes into a file or a pipe.
// Never changes a setting of the console.
#pragma once

#include <string_view>

namespace stage {

enum class Stream { Output, Error };

void print(Stream stream, std::string_view utf8);

// Whether a person watches the stream, so that a line may be redrawn.
bool isTerminal(Stream stream);

} // namespace stage
