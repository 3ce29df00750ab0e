// A program's icon: one drawing at several sizes in a file that Windows knows.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace artpack {

inline constexpr int kLargestIcon = 256; // pixels a side; the file says so with one byte

// The bytes of an .ico file with a square picture of each size, in PNG form, which Windows reads since Vista. What the
// SVG leaves open is transparent. Throws Error as renderSvg.
std::vector<std::uint8_t> drawIcon(const std::filesystem::path& svg, std::span<const int> sides);

} // namespace artpack
