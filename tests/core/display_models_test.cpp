// The numbers of bar graph, bubble chamber, data pad and Lissajous figure. Random numbers were recorded from the rand
// of Windows' C runtime; bubbles, colours of the cycle and curves were computed by a script, the rest by hand. Draws
// nothing.
#include "base/runtime_random.h"
#include "instruments/displays/bar_graph_model.h"
#include "instruments/displays/data_pad_model.h"
#include "instruments/scenes/bubble_model.h"
#include "instruments/scopes/lissajous_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <iterator>
#include <numeric>
#include <set>
#include <string>
#include <tuple>

namespace veldran {
namespace {

TEST(BarGraphModel, SegmentsAreEvenAndFillFromNothingToAll) {
    for (const int width : {16, 17, 100, 256, 1024})
        for (const int depth : {2, 14, 256}) {
            SCOPED_TRACE(testing::Message() << width << ' ' << depth);
            const std::vector<BarSegment> segments = barSegments(width, depth);
            ASSERT_GE(segments.size(), 4u);
            std::set<int> widths;
            int end = -1;
            for (const BarSegment& segment : segments) {
                EXPECT_GT(segment.left, end);
                end = segment.right;
                widths.insert(segment.right - segment.left);
            }
            EXPECT_EQ(segments.front().left, 0);
            EXPECT_TRUE(*widths.begin() >= 3 && *widths.rbegin() - *widths.begin() <= 1);
            for (const BarType type : {BarType::Gradient, BarType::Segments})
                for (const int frames : {2, 3, 32760}) {
                    const BarGraphParameters p{width, depth, frames, type, 0, 0, 0};
                    EXPECT_EQ(filledColumns(p, segments, 0), 0);
                    EXPECT_EQ(filledColumns(p, segments, frames - 1), width);
                }
        }
}

TEST(BarGraphModel, ImagesAreCutToTheBarsShape) {
    EXPECT_EQ(partShapedLike(200, 100, 256, 14), (CanvasRect{0, 44, 200, 55}));
    EXPECT_EQ(partShapedLike(100, 100, 16, 256), (CanvasRect{47, 0, 53, 100}));
    EXPECT_EQ(partShapedLike(1, 1, 1024, 2), (CanvasRect{0, 0, 1, 1}));
    EXPECT_EQ(partShapedLike(65535, 65535, 1024, 256), (CanvasRect{0, 24575, 65535, 40959}));
}

constexpr BubbleParameters kBubbles{10632, 18, 60, 140, 128, 12, 25};

std::array<int, 6> valuesOf(const Bubble& b) {
    return {b.x, b.y, b.diameter, b.speed, b.level, static_cast<int>(b.angle)};
}

CanvasPoint sumOf(const std::vector<CanvasPoint>& points) {
    return std::accumulate(points.begin(), points.end(), CanvasPoint{}, [](CanvasPoint a, CanvasPoint b) {
        return CanvasPoint{a.x + b.x, a.y + b.y};
    });
}

CanvasPoint sumOf(const std::vector<BubblePlace>& places) {
    std::vector<CanvasPoint> centres;
    std::ranges::transform(places, std::back_inserter(centres), &BubblePlace::centre);
    return sumOf(centres);
}

TEST(RuntimeRandom, GivesTheNumbersOfTheRuntime) {
    RuntimeRandom random(0xFFFFFFFF);
    for (const int number : {35, 29739, 3374, 11141, 31308, 7870})
        EXPECT_EQ(random.next(), number);
    long sum = 0;
    for (int i = 0; i < 9994; ++i)
        sum += random.next();
    EXPECT_EQ(sum, 163720364);
}

TEST(BubbleModel, SeedGivesTheBubbles) {
    const BubbleSet set = makeBubbleSet(kBubbles);
    // As wide as the tank, and wider: the smaller bubbles keep the places that the sequence gives them.
    const BubbleSet wider = makeBubbleSet({1000, 8, 40, 40, 64, 64, 0});
    ASSERT_EQ(set.bubbles.size(), 40u);
    EXPECT_EQ(valuesOf(set.bubbles[0]), (std::array{82, 80, 24, 1, 255, 2}));
    EXPECT_EQ(valuesOf(set.bubbles[9]), (std::array{74, 75, 17, 2, 160, 132}));
    EXPECT_EQ(valuesOf(set.bubbles[39]), (std::array{85, 8, 12, 4, 128, 30}));
    EXPECT_EQ(valuesOf(wider.bubbles[0]), (std::array{104, 61, 118, 1, 255, 69}));
    EXPECT_EQ(valuesOf(wider.bubbles[4]), (std::array{49, 45, 95, 2, 160, 64}));
}

TEST(BubbleModel, FramesDoNotDependOnTheOrderInWhichTheyAreAsked) {
    // Steps of 3.6 degrees, which sums round.
    BubbleMotion steady(makeBubbleSet({1000, 8, 60, 140, 100, 10, 99})), jumping = steady;
    std::vector<CanvasPoint> sums;
    for (int frame = 0; frame < 100; ++frame) {
        sums.push_back(sumOf(steady.places(frame)));
        jumping.places((frame * 37) % 100);
        EXPECT_EQ(sumOf(jumping.places(frame)), sums.back()) << frame;
    }
    EXPECT_EQ(sums[33], (CanvasPoint{1174, -2396}));
    EXPECT_EQ(sums[99], (CanvasPoint{1733, -11276}));
}

TEST(BubbleModel, RowsComeBackAtTheBottom) {
    BubbleMotion motion(makeBubbleSet(kBubbles));
    const std::vector<BubblePlace> first = motion.places(0);
    const std::vector<BubblePlace> last = motion.places(kBubbles.frames); // one past the end: the loop has no seam
    for (std::size_t i = 0; i < first.size(); ++i)
        EXPECT_EQ((CanvasPoint{last[i].centre.x, wrappedRow(last[i].centre.y, 280)}), first[i].centre);
    EXPECT_EQ((std::array{wrappedRow(-1, 280), wrappedRow(-281, 280), wrappedRow(-1120, 280), wrappedRow(283, 280)}),
              (std::array{279, 279, 0, 283}));
}

TEST(BubbleModel, ShadesOfSpritesAndBevels) {
    EXPECT_EQ(bubbleGreys(9, 255), (std::vector<std::uint8_t>{255, 192, 128, 64}));
    const TankGeometry tank = tankGeometry(120, 280);
    EXPECT_EQ((std::array{tank.sideBevel, tank.endBevel, tank.corner}), (std::array{30, 7, 20}));
    // 255 - 100 at the border, then up by the sine of equal steps, 30 and 60 degrees, cut off.
    EXPECT_EQ(bevelFactors(3, 100), (std::vector{155, 204, 241}));
    EXPECT_TRUE(bevelFactors(0, 100).empty());
}

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
    const std::array<int, 3> expected[] = {{'b', 1, 0}, {'!', 0, 1}, {0xFF, 1, 1}, {'a', 0, 2}}; // code, column, row
    ASSERT_EQ(glyphs.size(), std::size(expected));
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const auto& [code, column, row] = expected[i];
        EXPECT_EQ(glyphs[i].source, rectAt({8 + 24 * (code - 33), 0}, 18, 30)) << i;
        EXPECT_EQ(glyphs[i].target, (CanvasPoint{78 + 18 * column, glyphs[0].target.y + 30 * row})) << i;
    }
    // A long text fills the screen of either case and no more.
    for (const auto& [simple, screenEnd] : {std::pair{false, 648}, {true, 708}}) {
        const std::vector<PageGlyph> full = pageGlyphs(pageOf(std::string(10'000, 'w')), 5, pageRows(simple));
        const CanvasPoint last = full.back().target;
        EXPECT_GE(full.front().target.y, 64);
        EXPECT_TRUE(last.x + 18 == 726 && last.y + 30 <= screenEnd && last.y + 60 > screenEnd) << simple;
    }
    EXPECT_EQ(dataPadFrameCount({}), 1);
    EXPECT_TRUE(pageGlyphs({}, 0, 19).empty());
}

TEST(DataPadModel, ProgressFillsFourFifths) {
    const DataPadColours colours = dataPadColours(makeColour(255, 255, 0), 0, 45);
    // Frame, of so many lines, columns filled, red of the track's last pixel, from 255 towards 114.
    for (const auto& [frame, lines, filled, lastRed] :
         {std::array{0, 0, 0, 115}, {2, 3, 118, 189}, {999, 1000, 177, 227}}) {
        const std::vector<FilledRect> bar = progressBar(colours, frame, static_cast<std::size_t>(lines));
        EXPECT_EQ(bar[0], (FilledRect{{98, 694, 98 + filled, 710}, colours.counter}));
        ASSERT_EQ(bar.size(), static_cast<std::size_t>(1 + 222 - filled));
        EXPECT_EQ((std::pair{bar[1].colour, bar[2].colour}), (std::pair{colours.counter, makeColour(254, 254, 0)}));
        EXPECT_EQ(bar.back(), (FilledRect{{319, 694, 320, 710}, makeColour(lastRed, lastRed, 0)})) << frame;
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
    const std::array<int, 4> cases[] = {{0, 0, 153, 255},    {51, 203, 50, 51},   {64, 255, 102, 0},
                                        {103, 99, 252, 155}, {170, 89, 242, 166}, {255, 6, 159, 249}};
    for (const auto& [step, red, green, blue] : cases) // of 128 to a unit
        EXPECT_EQ(colourCycle(step / 128.0), makeColour(red, green, blue)) << step;
    EXPECT_EQ(orbRings(57, 100)[29], (FilledRect{{464, 32, 466, 34}, colourCycle(168 / 128.0)}));
    EXPECT_EQ(orbRings(0, 0)[29].colour, colourCycle(246 / 128.0));
}

constexpr LissajousParameters kFigure{1, 3, 3, false, 145, 2};

LissajousParameters figure(int horizontal, int vertical, int size) {
    return {horizontal, vertical, 1, false, size, 1};
}

TEST(LissajousModel, CurveFollowsFrequenciesAndPhases) {
    const struct {
        LissajousParameters parameters;
        LissajousPhases phases;
        int offset;
        std::size_t corners;
        std::array<CanvasPoint, 4> points; // the first corner, a quarter on, the last, and the sum of all
    } cases[] = {{kFigure, {57, 0}, 60, 291, {{{283, 205}, {85, 61}, {283, 205}, {59733, 59655}}}},
                 {figure(2, 3, 64), {0, -45}, 0, 128, {{{128, 19}, {0, 19}, {127, 13}, {8192, 8192}}}},
                 {figure(32760, 7, 256), {}, 0, 512, {{{512, 256}, {512, 0}, {510, 235}, {131072, 131072}}}}};
    for (const auto& c : cases) {
        const std::vector<CanvasPoint> curve = lissajousCurve(c.parameters, c.phases, c.offset);
        ASSERT_EQ(curve.size(), c.corners);
        EXPECT_EQ((std::array{curve[0], curve[c.corners / 4], curve.back(), sumOf(curve)}), c.points) << c.corners;
    }
    EXPECT_LE(lissajousCurve(figure(1, 1, -64), {}, 0).size(), 3u); // from a host's own ranges: no endless curve
}

TEST(LissajousModel, IncrementTurnsOnePhase) {
    for (const auto& [increment, frames, atFive] :
         {std::tuple{3, 120, 15}, {-60, 6, -300}, {0, 360, 5}, {INT_MIN, 1, -1800}}) {
        EXPECT_EQ(lissajousFrameCount(increment), frames) << increment;
        for (const bool varyY : {false, true}) {
            const auto [x, y] = lissajousPhases({1, 3, increment, varyY, 145, 2}, 5);
            EXPECT_EQ((std::pair{x, y}), varyY ? std::pair(0, atFive) : std::pair(atFive, 0)) << increment;
        }
    }
}

} // namespace
} // namespace veldran
