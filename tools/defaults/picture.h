// The default picture: a sunrise over hills, wide and flat, from night at its left to day at its right.
#pragma once

#include <string>

namespace defaults {

// A binary PPM file.
std::string sunrise();

} // namespace defaults
