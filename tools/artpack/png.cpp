// Collects what cairo writes; see the header.
#include "artpack/png.h"

namespace artpack {
namespace {

cairo_status_t appendBytes(void* target, const unsigned char* data, unsigned int length) {
    auto& bytes = *static_cast<std::vector<std::uint8_t>*>(target);
    bytes.insert(bytes.end(), data, data + length);
    return CAIRO_STATUS_SUCCESS;
}

} // namespace

std::vector<std::uint8_t> pngOf(cairo_surface_t* surface) {
    std::vector<std::uint8_t> png;
    return cairo_surface_write_to_png_stream(surface, appendBytes, &png) == CAIRO_STATUS_SUCCESS
               ? png
               : std::vector<std::uint8_t>();
}

} // namespace artpack
