// Renders with librsvg onto a cairo image.
#include "artpack/picture.h"

#include "artpack/error.h"
#include "artpack/png.h"

#include <librsvg/rsvg.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <string>

namespace artpack {
namespace {

struct Release {
    void operator()(RsvgHandle* svg) const { g_object_unref(svg); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
template <typename Type>
using Owned = std::unique_ptr<Type, Release>;

// Takes over what librsvg reports.
Error failure(const std::filesystem::path& file, const char* what, GError* reported) {
    const Owned<GError> error(reported);
    std::string text = file.string() + ": " + what;
    if (error)
        text += std::string(": ") + error->message;
    return Error(text.substr(0, text.find_last_not_of('\n') + 1)); // the XML parser's messages end their line
}

int wholePixels(const std::filesystem::path& file, double length) {
    if (!(length >= 1 && length <= kLargestSide) || length != std::floor(length))
        throw Error(file.string() + ": width and height must be whole pixels from 1 to " +
                    std::to_string(kLargestSide));
    return static_cast<int>(length);
}

Size sizeOf(const std::filesystem::path& file, RsvgHandle* svg) {
    double width = 0;
    double height = 0;
    if (!rsvg_handle_get_intrinsic_size_in_pixels(svg, &width, &height))
        throw Error(file.string() + ": gives no width and height in pixels");
    return {wholePixels(file, width), wholePixels(file, height)};
}

Picture copyPixels(cairo_surface_t* surface, Size size) {
    cairo_surface_flush(surface);
    const unsigned char* row = cairo_image_surface_get_data(surface);
    const auto width = static_cast<std::size_t>(size.width);
    Picture picture{size, std::vector<std::uint32_t>(width * static_cast<std::size_t>(size.height))};
    for (auto out = picture.pixels.begin(); out != picture.pixels.end(); out += size.width) {
        std::memcpy(&*out, row, width * sizeof(std::uint32_t));
        row += cairo_image_surface_get_stride(surface);
    }
    for (std::uint32_t& pixel : picture.pixels)
        pixel &= 0xFFFFFF; // the top byte of cairo's RGB24 has no defined value
    return picture;
}

Owned<RsvgHandle> readSvg(const std::filesystem::path& file) {
    GError* error = nullptr;
    Owned<RsvgHandle> svg(rsvg_handle_new_from_file(file.c_str(), &error));
    if (!svg)
        throw failure(file, "cannot be read as SVG", error);
    return svg;
}

// Over what the surface holds, filling it.
void draw(const std::filesystem::path& file, RsvgHandle* svg, cairo_surface_t* surface, Size size) {
    const Owned<cairo_t> context(cairo_create(surface));
    const RsvgRectangle page{0, 0, static_cast<double>(size.width), static_cast<double>(size.height)};
    GError* error = nullptr;
    if (!rsvg_handle_render_document(svg, context.get(), &page, &error))
        throw failure(file, "cannot be rendered", error);
    if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS)
        throw failure(file, cairo_status_to_string(cairo_status(context.get())), nullptr);
}

void fillWhite(cairo_surface_t* surface) {
    const Owned<cairo_t> context(cairo_create(surface));
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
}

} // namespace

Picture renderSvg(const std::filesystem::path& file) {
    const Owned<RsvgHandle> svg = readSvg(file);
    const Size size = sizeOf(file, svg.get());
    const Owned<cairo_surface_t> surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height));
    fillWhite(surface.get());
    draw(file, svg.get(), surface.get(), size);
    return copyPixels(surface.get(), size);
}

std::vector<std::uint8_t> renderPng(const std::filesystem::path& file, int side) {
    const Owned<RsvgHandle> svg = readSvg(file);
    const Owned<cairo_surface_t> surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, side, side));
    draw(file, svg.get(), surface.get(), {side, side});
    std::vector<std::uint8_t> png = pngOf(surface.get());
    if (png.empty())
        throw failure(file, "cannot be written as PNG", nullptr);
    return png;
}

} // namespace artpack
