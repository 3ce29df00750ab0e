// Heights are in pixels.
#include "ui/plugin_fonts.h"

namespace veldran {
namespace {

constexpr int kNormalHeight = 14;
constexpr int kSmallHeight = 12;

const PluginFonts* current = nullptr;

Font createFont(const char* face, int height) {
    return Font(CreateFontA(height, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, face));
}

} // namespace

PluginFonts createPluginFonts() {
    return {createFont("Arial", kNormalHeight), createFont("MS Sans Serif", kNormalHeight),
            createFont("Arial", kSmallHeight)};
}

void setCurrentFonts(const PluginFonts* fonts) {
    current = fonts;
}

const PluginFonts* currentFonts() {
    return current;
}

} // namespace veldran
