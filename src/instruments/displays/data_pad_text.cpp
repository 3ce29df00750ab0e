// Data pad: text.
#include "instruments/displays/data_pad_text.h"

#include <algorithm>
#include <optional>

namespace veldran {
namespace {

constexpr int kLongestRead = 259; // characters, the line's end among them
constexpr std::uint8_t kEndOfFile = 26;
constexpr std::uint8_t kFirstPrintable = 32;

// Pixels of the glyph sheet: one row of glyphs from code 33 on.
constexpr std::uint8_t kFirstGlyph = 33;
constexpr int kSheetLeadIn = 8;
constexpr int kSheetGap = 6;
constexpr int kGlyphWidth = 18;
constexpr int kGlyphHeight = 30;

// The page in the case's pixels: where the first character of the first row stands in the screen.
constexpr CanvasPoint kPageCorner{78, 76};

// Takes characters off the front as a file that is read as text gives them: a carriage return before a line feed
// is no character.
std::optional<std::uint8_t> takeCharacter(std::span<const std::uint8_t>& bytes) {
    if (bytes.size() > 1 && bytes[0] == '\r' && bytes[1] == '\n')
        bytes = bytes.subspan(1);
    if (bytes.empty() || bytes.front() == kEndOfFile)
        return std::nullopt;
    const std::uint8_t character = bytes.front();
    bytes = bytes.subspan(1);
    return character;
}

// Takes the characters of one read; false, and `line` unchanged, at the file's end.
bool takeLine(std::span<const std::uint8_t>& bytes, TextLine& line) {
    int column = 0;
    int read = 0;
    bool ended = false; // by a zero
    while (read < kLongestRead) {
        const std::optional<std::uint8_t> character = takeCharacter(bytes);
        if (!character)
            break;
        ended = ended || *character == 0;
        if (read < kTextColumns && !ended && *character >= kFirstPrintable)
            line[static_cast<std::size_t>(column++)] = *character;
        ++read;
        if (*character == '\n')
            break;
    }
    return read > 0;
}

constexpr TextLine kBlankLine = [] {
    TextLine line{};
    line.fill(' ');
    return line;
}();

// The frame's line is the first.
std::size_t lineOfRow(const TextPage& page, int frame, int row) {
    return (static_cast<std::size_t>(frame) + static_cast<std::size_t>(row)) % page.size();
}

PageGlyph pageGlyph(std::uint8_t code, int column, int row) {
    const int x = kSheetLeadIn + (code - kFirstGlyph) * (kGlyphWidth + kSheetGap);
    return {rectAt({x, 0}, kGlyphWidth, kGlyphHeight),
            {kPageCorner.x + kGlyphWidth * column, kPageCorner.y + kGlyphHeight * row}};
}

} // namespace

TextPage readTextPage(std::span<const std::uint8_t> bytes) {
    TextPage page;
    for (TextLine line = kBlankLine; takeLine(bytes, line); line = kBlankLine)
        page.push_back(line);
    return page;
}

int dataPadFrameCount(const TextPage& page) {
    return static_cast<int>(std::max<std::size_t>(page.size(), 1));
}

TextLine topLine(const TextPage& page, int frame) {
    return page.empty() ? kBlankLine : page[lineOfRow(page, frame, 0)];
}

std::vector<PageGlyph> pageGlyphs(const TextPage& page, int frame, int rows) {
    const int filled = static_cast<int>(std::min(page.size(), static_cast<std::size_t>(rows)));
    std::vector<PageGlyph> glyphs;
    for (int row = 0; row < filled; ++row) {
        const TextLine& line = page[lineOfRow(page, frame, row)];
        for (int column = 0; column < kTextColumns; ++column)
            if (const std::uint8_t code = line[static_cast<std::size_t>(column)]; code >= kFirstGlyph)
                glyphs.push_back(pageGlyph(code, column, row));
    }
    return glyphs;
}

} // namespace veldran
