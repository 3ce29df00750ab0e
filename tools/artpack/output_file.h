// Files that stand complete or not at all.
// Never touches an older file of the name before the new one is whole.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

namespace artpack {

// Writes beside the target, under its name with ".part" appended, and renames. Throws Error, leaving the target as it
// was and no ".part" behind, when the file cannot be written.
void writeFile(const std::filesystem::path& file, std::span<const std::uint8_t> bytes);

} // namespace artpack
