// What the window works out before it draws: the frame that is due, zooming and scrolling, pixels on the screen, texts.
#include "document/document.h"
#include "formats/file_sizes.h"
#include "formats/steps.h"
#include "view/playback_clock.h"
#include "view/screen_picture.h"

#include <gtest/gtest.h>

#include <numeric>
#include <tuple>

using namespace stage;

namespace {

using Microseconds = PlaybackClock::Microseconds;

using Pixels = std::vector<std::uint32_t>;

constexpr Microseconds kBegin = 1'000'000'007;

struct Moment {
    Microseconds after;
    std::size_t frame;
    std::optional<Microseconds> until; // after the beginning, too
};

void expectMoments(const PlaybackClock& clock, std::initializer_list<Moment> moments) {
    for (const Moment& moment : moments) {
        SCOPED_TRACE(moment.after);
        const PlaybackClock::Due due = clock.at(kBegin + moment.after);
        EXPECT_EQ(due.frame, moment.frame);
        EXPECT_EQ(due.until ? std::optional(*due.until - kBegin) : std::nullopt, moment.until);
    }
}

// Frames of one colour each, with their delays.
Document documentOf(std::initializer_list<std::pair<Rgb, std::uint32_t>> frames) {
    Animation animation{2, 2, {}, 0, {}, {}, {}};
    for (const auto& [colour, delay] : frames) {
        animation.frames.push_back(frameOf({2, 2, Pixels(4, pixelOf(colour))}));
        animation.frames.back().delay = delay;
    }
    Document document;
    document.animation = std::make_shared<const Animation>(std::move(animation));
    return document;
}

// On a target as large as the place unless another size is said.
Pixels drawn(const Picture& picture, const ViewBox& place, const Backdrop& backdrop = {}, ViewSize size = {}) {
    if (size.width == 0)
        size = {place.width, place.height};
    Pixels pixels(static_cast<std::size_t>(size.width * size.height), 0xABCDEF);
    drawPicture(picture, place, backdrop, {pixels, size.width, size.height});
    return pixels;
}

} // namespace

TEST(PlaybackClock, ShowsEachFrameFromItsDeadlineToTheNext) {
    const std::uint32_t delays[] = {40, 10, 50};
    PlaybackClock forever(delays, 0);
    forever.start(0, kBegin);
    expectMoments(forever, {{0, 0, 40000},
                            {39999, 0, 40000},
                            {40000, 1, 50000},
                            {99999, 2, 100000},
                            {135000, 0, 140000},
                            {1049999, 1, 1050000}}); // ten rounds late, and no later than that
    PlaybackClock twice(delays, 2);
    twice.start(0, kBegin);
    expectMoments(twice, {{199999, 2, 200000}, {200000, 2, std::nullopt}, {900000, 2, std::nullopt}});
    twice.start(2, kBegin); // the frames before count as shown
    expectMoments(twice, {{0, 2, 50000}, {50000, 0, 90000}, {150000, 2, std::nullopt}});
    PlaybackClock clock(delays, 0);
    clock.setSpeed(50, kBegin);
    clock.start(0, kBegin);
    expectMoments(clock, {{60000, 0, 80000}});
    clock.setSpeed(200, kBegin + 60000); // 30 ms have been shown, 10 are left
    expectMoments(clock, {{60000, 0, 65000}, {65000, 1, 70000}});
}

// Someone who only ever waits for the next deadline is neither early nor late in the end.
TEST(PlaybackClock, DoesNotDrift) {
    const std::uint32_t delays[] = {33, 0, 17, 7, 100};
    const Microseconds round = (33 + 1 + 17 + 7 + 100) * 1000;
    for (const int percent : {33, 100, 270}) {
        SCOPED_TRACE(percent);
        PlaybackClock clock(delays, 0);
        clock.setSpeed(percent, kBegin);
        clock.start(0, kBegin);
        Microseconds moment = kBegin;
        constexpr int kRounds = 200;
        for (std::size_t i = 0; i < kRounds * std::size(delays); ++i) {
            const PlaybackClock::Due due = clock.at(moment);
            ASSERT_EQ(due.frame, i % std::size(delays));
            ASSERT_GT(*due.until, moment);
            moment = *due.until;
        }
        EXPECT_NEAR(static_cast<double>(moment - kBegin), 100.0 * kRounds * static_cast<double>(round) / percent, 1.0);
    }
    PlaybackClock slow(Pixels(70000, 0xFFFFFFFF), 0); // sums stay within their 64 bits
    slow.start(69999, kBegin);
    EXPECT_EQ(slow.at(kBegin).frame, 69999U);
    EXPECT_GT(*slow.at(kBegin).until, kBegin);
}

TEST(ViewGeometry, ZoomsInStepsAndFits) {
    const std::tuple<int, int, int> steps[] = {{100, 75, 125}, {104, 100, 125}}; // 104: a fitted size
    for (const auto& [zoom, below, above] : steps)
        EXPECT_TRUE(zoomBelow(zoom) == below && zoomAbove(zoom) == above) << zoom;
    EXPECT_TRUE(zoomAbove(kLargestZoom) == kLargestZoom && zoomBelow(kSmallestZoom) == kSmallestZoom);
    const std::tuple<ViewSize, ViewSize, int> fits[] = {{{200, 100}, {500, 500}, 250},
                                                        {{1000, 3000}, {500, 600}, 20},
                                                        {{65535, 1}, {10, 10}, kSmallestZoom},
                                                        {{1, 1}, {0, 0}, kSmallestZoom}};
    for (const auto& [picture, view, zoom] : fits)
        EXPECT_EQ(zoomToFit(picture, view), zoom);
    EXPECT_EQ(zoomed({200, 1}, 5), (ViewSize{10, 1}));
}

TEST(ViewGeometry, CentresWhatIsSmallAndScrollsTheRest) {
    EXPECT_EQ(placedInView({100, 50}, {300, 60}, {}), (ViewBox{100, 5, 100, 50}));
    EXPECT_EQ(placedInView({400, 50}, {300, 60}, {30, 0}), (ViewBox{-30, 5, 400, 50}));
    EXPECT_EQ(clampedScroll({500, -3}, {400, 50}, {300, 60}), (ViewPoint{100, 0}));

    // What lies under the mouse stays there, as far as scrolling reaches.
    const ViewSize view{300, 200};
    const ViewSize picture{400, 400};
    const ViewBox before = placedInView(picture, view, {50, 80});
    for (const ViewPoint mouse : {ViewPoint{150, 100}, ViewPoint{290, 10}}) {
        const ViewSize after = zoomed(picture, 300);
        const ViewBox box = placedInView(after, view, scrollAfterZoom(mouse, before, after, view));
        EXPECT_EQ((mouse.x - before.left) * 3, mouse.x - box.left);
        EXPECT_EQ((mouse.y - before.top) * 3, mouse.y - box.top);
    }
}

TEST(ViewGeometry, FindsTheCellsOfTheStrip) {
    StripLayout strip{100, 10, 350, 120};
    EXPECT_EQ(strip.largestScroll(), 650);
    EXPECT_TRUE(strip.firstSeen() == 1 && strip.endSeen() == 5 && strip.left(1) == -20);
    EXPECT_TRUE(strip.cellAt(0) == 1 && strip.cellAt(80) == 2);
    // The neighbour behind it is shown too, or the one before it.
    for (const auto& [cell, scroll] : {std::pair{3u, 150}, {2u, 100}, {0u, 0}, {9u, 650}})
        EXPECT_EQ(strip.scrollToShow(cell), scroll) << cell;
    strip.viewWidth = 150; // no room for neighbours
    EXPECT_EQ(strip.scrollToShow(2), 150);
    const StripLayout wide{100, 2, 350, 0};
    EXPECT_EQ(wide.largestScroll(), 0);
    EXPECT_TRUE(wide.cellAt(210) == wide.cells && wide.cellAt(-1) == wide.cells);
}

TEST(ScreenPicture, EnlargesToSquaresAndAveragesWhenReducing) {
    const Picture picture{2, 1, {pixelOf({255, 0, 0}), pixelOf({0, 0, 255})}};
    EXPECT_EQ(drawn(picture, {0, 0, 6, 1}), (Pixels{0xFF0000, 0xFF0000, 0xFF0000, 0x0000FF, 0x0000FF, 0x0000FF}));
    EXPECT_EQ(drawn(picture, {0, 0, 1, 1}), Pixels{0x800080});
    // A transparent pixel lends no colour to its neighbour's mean, only its transparency.
    const Picture half{2, 1, {pixelOf({200, 100, 50}), kTransparentPixel}};
    EXPECT_EQ(resizedPicture(half, 1, 1).pixels, std::vector<Pixel>{pixelOf({200, 100, 50}, 128)});
    EXPECT_EQ(resizedPicture({2, 1, {kTransparentPixel, kTransparentPixel}}, 1, 1).pixels,
              std::vector<Pixel>{kTransparentPixel});
}

TEST(ScreenPicture, ShowsWhatIsBehindTransparency) {
    const Picture clear{4, 2, std::vector<Pixel>(8, kTransparentPixel)};
    EXPECT_EQ(drawn(clear, {0, 0, 4, 2}, {BackdropKind::Checkerboard, {}, 2}),
              (Pixels{0xFFFFFF, 0xFFFFFF, 0xCCCCCC, 0xCCCCCC, 0xFFFFFF, 0xFFFFFF, 0xCCCCCC, 0xCCCCCC}));
    const Picture veil{1, 1, {pixelOf({255, 255, 255}, 51)}}; // a fifth
    const std::pair<Backdrop, std::uint32_t> cases[] = {{{BackdropKind::Black}, 0x333333},
                                                        {{BackdropKind::White}, 0xFFFFFF},
                                                        {{BackdropKind::Colour, {0, 100, 200}}, 0x3383D3}};
    for (const auto& [backdrop, seen] : cases)
        EXPECT_EQ(drawn(veil, {0, 0, 1, 1}, backdrop), Pixels{seen});
}

// Whatever part of a picture is in view looks as it does when all is.
TEST(ScreenPicture, StaysInsideTheTarget) {
    Picture picture{7, 5, std::vector<Pixel>(35)};
    std::iota(picture.pixels.begin(), picture.pixels.end(), 0xFF102030U);
    for (const ViewSize size : {ViewSize{21, 15}, ViewSize{3, 2}, ViewSize{7, 9}}) {
        const auto whole = drawn(picture, {0, 0, size.width, size.height});
        for (int left = -size.width - 1; left <= 5; ++left)
            for (int top = -size.height - 1; top <= 5; ++top) {
                const auto part = drawn(picture, {left, top, size.width, size.height}, {}, {4, 4});
                for (int i = 0; i < 16; ++i) {
                    const int x = i % 4 - left, y = i / 4 - top;
                    const bool isInside = x >= 0 && x < size.width && y >= 0 && y < size.height;
                    ASSERT_EQ(part[static_cast<std::size_t>(i)],
                              isInside ? whole[static_cast<std::size_t>(y * size.width + x)] : 0xABCDEF);
                }
            }
    }
}

TEST(Document, SaysWhatItIs) {
    Document document;
    EXPECT_EQ(windowTitle(document), "Stage");
    document = documentOf({{{1, 2, 3}, 14}, {{4, 5, 6}, 14}, {{7, 8, 9}, 5}});
    document.isModified = true;
    EXPECT_EQ(windowTitle(document), "Untitled* - Stage");
    EXPECT_FALSE(document.hasFileOfItsFormat());
    document.file = std::filesystem::path("folder") / "radar.gif";
    EXPECT_TRUE(document.hasFileOfItsFormat());
    EXPECT_EQ(windowTitle(document), "radar.gif* - Stage");
    EXPECT_EQ(suggestedFile(document, OutputFormat::Apng), std::filesystem::path("folder") / "radar.apng");
    // 14, 28 and 33 ms end at 1, 3 and 3 hundredths.
    EXPECT_EQ(frameTimes(*document.animation, document.format).stored, (Pixels{10, 20, 0}));
    document.format = OutputFormat::Png; // numbered files are asked for each time
    EXPECT_FALSE(document.hasFileOfItsFormat());
    EXPECT_EQ(frameTimes(*document.animation, document.format).stored, (Pixels{14, 14, 5}));

    const std::pair<std::string, const char*> texts[] = {
        {frameText(0, 60), "Frame 1 of 60"},
        {playingTimeText({3050, 0, 0, 0}, 3), "3.05 s, 3 times"},
        {browserRateText(OutputFormat::Apng, {0, 0, 0, 12.34}), "Browsers: 12.3 frames/s"},
        {fileSizeText(OutputFormat::Gif, 1234567), "GIF: 1,234,567 bytes"},
        {delayText(10, 100), "10 ms \u2192 100 ms"},
        {shortSizeText(999), "999 B"},
        {shortSizeText(12345678), "12.3 MB"}};
    for (const auto& [text, wanted] : texts)
        EXPECT_EQ(text, wanted);
}

TEST(FileSizes, AreThoseOfTheFile) {
    const Rgb red{255, 0, 0}, blue{0, 0, 255}, green{0, 255, 0};
    const Document document = documentOf({{red, 50}, {red, 50}, {blue, 50}, {green, 50}});
    for (const OutputFormat format : {OutputFormat::Gif, OutputFormat::Apng, OutputFormat::Mng, OutputFormat::Png}) {
        SCOPED_TRACE(formatName(format));
        const auto sizes = measuredSizes(*document.animation, format, {}, {});
        ASSERT_TRUE(sizes);
        EXPECT_EQ(sizes->bytes, encodedSize(*document.animation, format, {}));
        ASSERT_EQ(sizes->frames.size(), 4U);
        EXPECT_EQ(sizes->frames[1] == 0, format != OutputFormat::Png); // joined with the first
        EXPECT_GT(sizes->frames[3], 0U);
        EXPECT_LE(std::accumulate(sizes->frames.begin(), sizes->frames.end(), std::uint64_t{0}), sizes->bytes);
    }
    const auto stopped = [](std::size_t done, std::size_t) { return done < 2; };
    EXPECT_FALSE(measuredSizes(*document.animation, OutputFormat::Gif, {}, stopped));
}
