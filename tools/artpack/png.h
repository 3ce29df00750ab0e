// The one way from a cairo image to the bytes of a PNG file.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <vector>

namespace artpack {

// Empty when cairo reports trouble.
std::vector<std::uint8_t> pngOf(cairo_surface_t* surface);

} // namespace artpack
