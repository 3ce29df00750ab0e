// The data pad's text and numbers. Colours of the cycle were computed by a script, the rest by hand. Draws nothing.
#include "instruments/data_pad_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace veldran {
namespace {

TextPage pageOf(std::string_view text) {
    return readTextPage({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

// The lines without the spaces that fill them up.
std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    for (const TextLine& line : pageOf(text)) {
        std::string trimmed(line.begin(), line.end());
        trimmed.resize(trimmed.find_last_not_of(' ') + 1);
        lines.push_back(trimmed);
    }
    return lines;
}

TextLine lineOf(std::string_view text) {
    return topLine(pageOf(text), 0);
}

TEST(DataPadText, IsReadLineByLine) {
    using namespace std::string_view_literals;
    using Lines = std::vector<std::string>;
    const std::string w36(36, 'w');
    EXPECT_EQ(linesOf("one\r\n\nA\tB"), (Lines{"one", "", "AB"}));
    EXPECT_EQ(linesOf("A\rB\r\r\nC"), (Lines{"AB", "C"}));
    EXPECT_EQ(linesOf("\tA\x80\xFF\0B\nC\x1A"
                      "D\n"sv),
              (Lines{"A\x80\xFF", "C"}));
    EXPECT_EQ(linesOf('\t' + std::string(40, 'w')), Lines{std::string(35, 'w')}); // the tab takes its place unseen
    EXPECT_EQ(linesOf(std::string(300, 'w') + "\nx"), (Lines{w36, w36, "x"}));
    EXPECT_EQ(linesOf(std::string(259, 'w') + "\nx"), (Lines{w36, "", "x"})); // the line's end is read alone
    EXPECT_EQ(linesOf(std::string(258, 'w') + "\r\nx"), (Lines{w36, "x"}));
    EXPECT_EQ(pageOf(std::string(1'000'000, 'w')).size(), 3862u);
    EXPECT_EQ(pageOf(std::string(100'000, '\n')).size(), 100'000u);
}

TEST(DataPadText, PageGoesRound) {
    const TextPage page = pageOf("a\n b\n!\xFF\n");
    EXPECT_EQ(dataPadFrameCount(page), 3);
    EXPECT_EQ(topLine(page, 4)[1], 'b');
    const std::vector<PageGlyph> glyphs = pageGlyphs(page, 1, 19);
    const struct { int code, column, row; } expected[] = {{'b', 1, 0}, {'!', 0, 1}, {0xFF, 1, 1}, {'a', 0, 2}};
    ASSERT_EQ(glyphs.size(), std::size(expected));
    const CanvasPoint top{78, glyphs[0].target.y};
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const auto& e = expected[i];
        const int x = 8 + 24 * (e.code - 33);
        EXPECT_EQ(glyphs[i].source, (CanvasRect{x, 0, x + 18, 30})) << i;
        EXPECT_EQ(glyphs[i].target, (CanvasPoint{top.x + 18 * e.column, top.y + 30 * e.row})) << i;
    }
    // A long text fills the screen of either case and no more.
    for (const bool simple : {false, true}) {
        const std::vector<PageGlyph> full = pageGlyphs(pageOf(std::string(10'000, 'w')), 5, pageRows(simple));
        const int screenEnd = simple ? 708 : 648;
        EXPECT_GE(full.front().target.y, 64);
        EXPECT_LE(full.back().target.y + 30, screenEnd);
        EXPECT_GT(full.back().target.y + 60, screenEnd);
        EXPECT_EQ(full.back().target.x + 18, 726);
    }

    EXPECT_EQ(dataPadFrameCount({}), 1);
    EXPECT_TRUE(pageGlyphs({}, 0, 19).empty());
}

TEST(DataPadModel, ProgressFillsFourFifths) {
    const DataPadColours colours = dataPadColours(makeColour(255, 255, 0), 0, 45);
    const struct {
        int frame;
        std::size_t lines;
        int filled, lastRed; // red of the track's last pixel, from 255 towards 114
    } cases[] = {{0, 0, 0, 115}, {2, 3, 118, 189}, {999, 1000, 177, 227}};
    for (const auto& c : cases) {
        const std::vector<FilledRect> bar = progressBar(colours, c.frame, c.lines);
        EXPECT_EQ(bar[0], (FilledRect{{98, 694, 98 + c.filled, 710}, colours.counter}));
        ASSERT_EQ(bar.size(), static_cast<std::size_t>(1 + 222 - c.filled));
        EXPECT_EQ(bar[1].colour, colours.counter);
        EXPECT_EQ(bar[2].colour, makeColour(254, 254, 0));
        EXPECT_EQ(bar.back(), (FilledRect{{319, 694, 320, 710}, makeColour(c.lastRed, c.lastRed, 0)})) << c.frame;
    }
}

TEST(DataPadModel, LineShowsItsBits) {
    const DataPadColours colours = dataPadColours(0x00FFFF, 0xFF35CD, 45);
    // Lowest three bits of A 1, z 010, ff 111, space 0.
    const std::string_view lit = "101001100010";
    const auto cells = statusCells(colours, lineOf("Az\xFF"));
    for (std::size_t i = 0; i < cells.size(); ++i)
        EXPECT_EQ(cells[i].colour, lit[i] == '1' ? colours.status : colours.statusOff) << i;
    EXPECT_EQ(cells[0].area, (CanvasRect{24, 670, 40, 686}));
    EXPECT_EQ(cells[11].area, (CanvasRect{72, 718, 88, 734}));

    TextLine line{};
    line[0] = 0x41; // 01000001 goes on in the second column
    line[35] = 0x01;
    EXPECT_EQ(matrixDots(line), (std::vector<CanvasRect>{{506, 23, 511, 28}, {511, 23, 516, 28}, {741, 43, 746, 48}}));
}

TEST(DataPadModel, OrbRunsThroughTheCycle) {
    const struct {
        int step; // of 128 to a unit
        Colour colour;
    } cases[] = {{0, makeColour(0, 153, 255)},    {51, makeColour(203, 50, 51)},   {64, makeColour(255, 102, 0)},
                 {103, makeColour(99, 252, 155)}, {170, makeColour(89, 242, 166)}, {255, makeColour(6, 159, 249)}};
    for (const auto& c : cases)
        EXPECT_EQ(colourCycle(c.step / 128.0), c.colour) << c.step;
    EXPECT_EQ(orbRings(57, 100)[29], (FilledRect{{464, 32, 466, 34}, colourCycle(168 / 128.0)}));
    EXPECT_EQ(orbRings(0, 0)[29].colour, colourCycle(246 / 128.0));
}

TEST(DataPadModel, LampsCountAndMarksRunInTheirTurn) {
    const DataPadColours colours = dataPadColours(makeColour(200, 100, 0), makeColour(0, 100, 200), 20);
    const std::array<FilledRect, 9> lamps = frameLamps(colours, 0x105);
    for (std::size_t i = 0; i < lamps.size(); ++i)
        EXPECT_EQ(lamps[i].colour, i == 0 || i == 2 || i == 8 ? colours.counter : colours.counterOff) << i;
    EXPECT_EQ(lamps[8].area, (CanvasRect{258, 670, 270, 686}));
    EXPECT_EQ(frameLamps(colours, 0x305), lamps); // the tenth bit has no lamp
    const std::array<FilledRect, 2> light = runningLight(colours, 11);
    EXPECT_EQ(light[0], (FilledRect{{98, 718, 350, 734}, colours.counterDark}));
    EXPECT_EQ(light[1], (FilledRect{{318, 718, 330, 734}, colours.counter}));
    EXPECT_EQ(runningLight(colours, 12)[1].area.left, 98);
    EXPECT_EQ(stepMarker(3), (CanvasRect{14, 368, 26, 380}));
    EXPECT_EQ(stepMarker(4).top, 320);
    EXPECT_EQ(blinkMark(2), (std::array<CanvasPoint, 4>{{{20, 283}, {29, 292}, {20, 301}, {11, 292}}}));
    EXPECT_EQ(blinkMark(3)[0], (CanvasPoint{20, 399}));
    const std::array<Colour, 128> shades = caseShades(makeColour(255, 128, 0));
    EXPECT_EQ(shades[0], makeColour(0, 0, 0));
    EXPECT_EQ(shades[127], makeColour(254, 127, 0));
    EXPECT_EQ(shades[64], makeColour(128, 64, 0));
}

} // namespace
} // namespace veldran
