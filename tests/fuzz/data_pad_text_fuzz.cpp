// The page of text that the data pad scrolls. Bytes: a frame, the text.
#include "fuzz_target.h"

#include "instruments/displays/data_pad_model.h"

using namespace veldran;
using fuzz::mustHold;

namespace {

constexpr int kCase = 762;                           // pixels a side
constexpr CanvasRect kGlyphSheet = {0, 0, 5369, 36}; // pixels

bool liesIn(const CanvasRect& inner, const CanvasRect& outer) {
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom && inner.left <= inner.right && inner.top <= inner.bottom;
}

void checkGlyphs(const TextPage& page, int frame, bool isSimple) {
    const std::vector<PageGlyph> glyphs = pageGlyphs(page, frame, pageRows(isSimple));
    mustHold(glyphs.size() <= static_cast<std::size_t>(pageRows(isSimple) * kTextColumns), "the page has an end");
    for (const PageGlyph& glyph : glyphs) {
        mustHold(liesIn(glyph.source, kGlyphSheet), "a glyph is one of the sheet");
        mustHold(glyph.target.x >= 0 && glyph.target.y >= 0 && glyph.target.x < kCase && glyph.target.y < kCase,
                 "a glyph lies on the pad");
    }
}

void checkShapes(const TextPage& page, int frame) {
    const auto mustLieOnThePad = [](const auto& parts) {
        for (const FilledRect& part : parts)
            mustHold(liesIn(part.area, {0, 0, kCase, kCase}), "a shape lies on the pad");
    };
    const DataPadColours colours = dataPadColours(0xFFFFFF, 0x00FF00, 45);
    mustLieOnThePad(progressBar(colours, frame, page.size()));
    mustLieOnThePad(frameLamps(colours, frame));
    mustLieOnThePad(statusCells(colours, topLine(page, frame)));
    mustLieOnThePad(runningLight(colours, frame));
    for (const CanvasRect& dot : matrixDots(topLine(page, frame)))
        mustHold(liesIn(dot, {0, 0, kCase, kCase}), "a dot lies on the pad");
    mustHold(liesIn(stepMarker(frame), {0, 0, kCase, kCase}), "the marker lies on the pad");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::size_t place = input.take<std::uint16_t>();
    const TextPage page = readTextPage(input.bytes());
    mustHold(page.size() <= input.bytes().size(), "a line takes at least a byte");
    std::vector<std::uint8_t> written;
    for (const TextLine& line : page) {
        mustHold(std::ranges::all_of(line, [](std::uint8_t code) { return code >= ' '; }), "a line can be printed");
        written.insert(written.end(), line.begin(), line.end());
        written.push_back('\n');
    }
    mustHold(readTextPage(written) == page, "lines come back as written");
    const int frame = static_cast<int>(place % static_cast<std::size_t>(dataPadFrameCount(page)));
    for (const bool isSimple : {false, true})
        checkGlyphs(page, frame, isSimple);
    checkShapes(page, frame);
    return 0;
}
