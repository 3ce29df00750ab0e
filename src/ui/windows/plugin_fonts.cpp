// Heights are in pixels at 100 % text size.
#include "ui/windows/plugin_fonts.h"

#include "ui/windows/text_scale.h"

namespace veldran {
namespace {

constexpr int kNormalHeight = 14;
constexpr int kSmallHeight = 12;

const PluginFonts* current = nullptr;

Font createFont(const char* face, int height) {
    return Font(CreateFontA(height, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, face));
}

} // namespace

CurrentFonts::CurrentFonts()
    : fonts_{createFont("Arial", scaled(kNormalHeight)), createFont("MS Sans Serif", scaled(kNormalHeight)),
             createFont("Arial", scaled(kSmallHeight))} {
    current = &fonts_;
}

CurrentFonts::~CurrentFonts() {
    current = nullptr;
}

const PluginFonts* currentFonts() {
    return current;
}

} // namespace veldran
