// Breaks the pictures into rows and draws the page with cairo.
// Never scales a picture: what is looked at is what gets packed.
#include "artpack/sheet.h"

#include "artpack/error.h"
#include "artpack/png.h"

#include <algorithm>
#include <memory>

namespace artpack {
namespace {

// All in pixels. A row takes two large dials side by side; a wider picture gets a row of its own.
constexpr int kRowWidth = 1560;
constexpr int kMargin = 16;
constexpr int kCaptionWidth = 240; // of the longest name; narrower pictures keep this distance
constexpr int kCaptionHeight = 24;
constexpr double kFontSize = 14;
constexpr double kGround = 0.85;

struct Release {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, Release>;
using Context = std::unique_ptr<cairo_t, Release>;

struct Place {
    int x;
    int y;
};

struct Layout {
    std::vector<Place> places;
    Size page;
};

Layout layOut(const std::vector<NamedPicture>& pictures) {
    Layout layout{{}, {kMargin, kMargin}};
    int x = kMargin;
    int y = kMargin;
    for (const NamedPicture& entry : pictures) {
        const Size size = entry.picture.size;
        const int cell = std::max(size.width, kCaptionWidth) + kMargin;
        if (x > kMargin && x + cell > kRowWidth) {
            x = kMargin;
            y = layout.page.height;
        }
        layout.places.push_back({x, y});
        x += cell;
        layout.page.width = std::max(layout.page.width, x);
        layout.page.height = std::max(layout.page.height, y + size.height + kCaptionHeight + kMargin);
        if (layout.page.width > kLargestSide || layout.page.height > kLargestSide)
            throw Error("the page becomes too large");
    }
    return layout;
}

void drawPicture(cairo_t* context, const Picture& picture, Place place) {
    // Cairo reads the pixels only, and RGB24 rows of whole 32-bit pixels have the stride that it wants.
    auto* pixels = reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(picture.pixels.data()));
    const Surface image(cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_RGB24, picture.size.width,
                                                            picture.size.height, picture.size.width * 4));
    cairo_set_source_surface(context, image.get(), place.x, place.y);
    cairo_paint(context);
}

void drawCaption(cairo_t* context, const NamedPicture& entry, Place place) {
    const Size size = entry.picture.size;
    const std::string text = entry.name + "  " + std::to_string(size.width) + " x " + std::to_string(size.height);
    cairo_set_source_rgb(context, 0, 0, 0);
    cairo_select_font_face(context, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, kFontSize);
    cairo_move_to(context, place.x, place.y + size.height + kFontSize + 2);
    cairo_show_text(context, text.c_str());
}

} // namespace

std::vector<std::uint8_t> drawSheet(const std::vector<NamedPicture>& pictures) {
    const Layout layout = layOut(pictures);
    const Surface page(cairo_image_surface_create(CAIRO_FORMAT_RGB24, layout.page.width, layout.page.height));
    const Context context(cairo_create(page.get()));
    cairo_set_source_rgb(context.get(), kGround, kGround, kGround);
    cairo_paint(context.get());
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        drawPicture(context.get(), pictures[i].picture, layout.places[i]);
        drawCaption(context.get(), pictures[i], layout.places[i]);
    }

    std::vector<std::uint8_t> png = pngOf(page.get());
    if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS || png.empty())
        throw Error("the page cannot be drawn");
    return png;
}

} // namespace artpack
