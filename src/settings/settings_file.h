// The configuration file's text, read into settings and written from them.
// Core: works on bytes already in memory; where the file stands and how it is replaced is not known here.
#pragma once

#include "settings/settings_table.h"

#include <string>
#include <string_view>

namespace veldran {

// Applies the lines of `file`, the bytes as stored, to `settings`. Never fails: what it does not understand it skips.
//  - Lines are taken in pieces of at most 259 bytes including their line feed, so what is left of a longer line counts
//    as a further line. A byte 26 ends the file, as in any text file of the platform.
//  - A key matches the first row that begins with it; people rely on shortened keys. An empty line, or one that begins
//    with a blank, has a key of length 0 and so sets the first row (to 0 when nothing follows).
//  - A comment begins with ";", which no key does.
//  - Numbers are an optional sign and digits modulo 2^32; text without digits is 0. No range is checked.
void readSettings(std::string_view file, PlugInSettings& settings);

// The whole file with CR LF line ends. Texts stand as they are: one so long that its line exceeds a piece comes back
// cut, and blanks or "=" at its beginning are lost. `timestamp` is the local time as 24 characters, "Sat Nov 14
// 14:41:00 2026".
std::string writeSettings(const PlugInSettings& settings, std::string_view timestamp);

} // namespace veldran
