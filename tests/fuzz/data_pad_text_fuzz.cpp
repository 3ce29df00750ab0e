// The page of text that the data pad scrolls. Bytes: a frame, the text.
#include "fuzz_target.h"

#include "instruments/data_pad_model.h"

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
    const CanvasRect pad{0, 0, kCase, kCase};
    const DataPadColours colours = dataPadColours(0xFFFFFF, 0x00FF00, 45);
    const TextLine top = topLine(page, frame);
    for (const FilledRect& part : progressBar(colours, frame, page.size()))
        mustHold(liesIn(part.area, pad), "the bar lies on the pad");
    for (const FilledRect& lamp : frameLamps(colours, frame))
        mustHold(liesIn(lamp.area, pad), "a lamp lies on the pad");
    for (const FilledRect& cell : statusCells(colours, top))
        mustHold(liesIn(cell.area, pad), "a cell lies on the pad");
    for (const FilledRect& light : runningLight(colours, frame))
        mustHold(liesIn(light.area, pad), "the light lies on the pad");
    for (const CanvasRect& dot : matrixDots(top))
        mustHold(liesIn(dot, pad), "a dot lies on the pad");
    for (const FilledRect& ring : orbRings(frame, page.size()))
        mustHold(ring.area.left <= ring.area.right && ring.area.top <= ring.area.bottom, "a ring has an inside");
    mustHold(liesIn(stepMarker(frame), pad), "the marker lies on the pad");
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
