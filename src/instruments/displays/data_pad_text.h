// Data pad: the page of text, from the bytes of a file to the glyphs of a frame. Core: draws nothing and knows no
// windows.
#pragma once

#include "instruments/artwork_geometry.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace veldran {

inline constexpr int kTextColumns = 36;

// Codes of Windows-1252, filled up with spaces.
using TextLine = std::array<std::uint8_t, kTextColumns>;
using TextPage = std::vector<TextLine>;

// Splits the bytes of a text file into lines. A line of more than 259 characters becomes several; of each, the first 36
// characters count, without the control characters among them. A zero ends the text of its line, and Ctrl+Z (26) ends
// the file, as in every file that Windows' runtime reads as text. No bytes give no lines. Throws std::bad_alloc when
// there is no memory for them.
TextPage readTextPage(std::span<const std::uint8_t> bytes);

// One frame a line, at least one.
int dataPadFrameCount(const TextPage& page);

// The line at the top of the page in a frame; spaces for a page without lines.
TextLine topLine(const TextPage& page, int frame);

// A character of the page: a cell of the glyph sheet and where its top left pixel goes on the canvas.
struct PageGlyph {
    CanvasRect source;
    CanvasPoint target;
};

// The characters of a frame, row by row; spaces have none. The page has room for `rows` lines, starts at its top with
// the frame's line, goes round at the text's end, and shows each line once at most.
std::vector<PageGlyph> pageGlyphs(const TextPage& page, int frame, int rows);

} // namespace veldran
