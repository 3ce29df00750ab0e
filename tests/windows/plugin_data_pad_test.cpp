// The data pad's pictures, measured in true-colour frames of half the case's size: text, lights, shadow, alpha.
#include "built_frames.h"

#include <algorithm>

namespace {

using namespace recording;

constexpr COLORREF kPage = RGB(255, 255, 255);
constexpr COLORREF kText = RGB(200, 0, 40);
constexpr COLORREF kCounter = RGB(0, 255, 0);
constexpr COLORREF kCounterOff = RGB(0, 114, 0); // 45 %
constexpr COLORREF kStatus = RGB(0, 0, 255);
constexpr COLORREF kStatusOff = RGB(0, 0, 114);

std::vector<Frame> framesOf(Builder& pad, const std::string& text, const std::string& settings = "") {
    const TemporaryFile file("veldran-data-pad-test.txt", text);
    pad.set("TextFile", file.path());
    return pad.frames(settings);
}

template <class Body>
void withPad(Body body) {
    withBuilder("MainDatapad",
                "*Truecolour=1 *MainDelay=7 Size=256 BackColor=#FFFFFF TextColor=#C80028 CounterColor=#00FF00 "
                "StatusColor=#0000FF",
                body);
}

// A pixel of the frame by a place of the case, both even, which it covers with its neighbours to the right and below.
COLORREF at(const Frame& frame, int x, int y) {
    return frame.colour(x / 2, y / 2);
}

// Whether something stands in a cell of the page.
bool isWritten(const Frame& frame, int column, int row) {
    for (int y = 0; y < 15; ++y)
        for (int x = 0; x < 9; ++x)
            if (frame.colour(39 + 9 * column + x, 38 + 15 * row + y) != kPage)
                return true;
    return false;
}

void expectTextThatGoesRound(Builder& pad) {
    const std::vector<std::string> lines = {"HH H", "", std::string(33, ' ') + "I\xC5H"};
    const std::vector<Frame> frames = framesOf(pad, lines[0] + '\n' + lines[1] + "\r\n" + lines[2]);
    ASSERT_EQ(frames.size(), 3u);
    for (std::size_t k = 0; k < 3; ++k)
        for (int row = 0; row < 19; ++row)
            for (int column = 0; column < 36; ++column) {
                const std::string line = row < 3 ? lines[(k + static_cast<std::size_t>(row)) % 3] : "";
                const bool expected =
                    static_cast<int>(line.size()) > column && line[static_cast<std::size_t>(column)] != ' ';
                ASSERT_EQ(isWritten(frames[k], column, row), expected) << k << ' ' << row << ' ' << column;
            }
    for (const Frame& frame : frames)
        EXPECT_TRUE(frame.width() == 381 && frame.height() == 381 && frame.info.delay == 7);
    // The upright strokes of an H are four pixels of the case wide.
    int solid = 0;
    for (int x = 39; x < 48; ++x)
        solid += frames[0].colour(x, 46) == kText;
    EXPECT_GE(solid, 2);
}

void expectLights(Builder& pad) {
    const std::vector<Frame> frames = framesOf(pad, "\n\n\n\n\nAz\xFF\n\n\n");
    ASSERT_EQ(frames.size(), 8u);
    const Frame& five = frames[5];
    for (int lamp = 0; lamp < 9; ++lamp)
        EXPECT_EQ(at(five, 102 + 20 * lamp, 676), lamp == 0 || lamp == 2 ? kCounter : kCounterOff) << lamp;
    EXPECT_EQ(at(five, 182, 726), kCounterOff);
    EXPECT_EQ(at(five, 202, 726), kCounter);
    // 5 / 8 of 177.6 is 111; the rest of 222 fades to 45 %, of which it reaches half.
    EXPECT_EQ(at(five, 98 + 108, 700), kCounter);
    EXPECT_LT(GetGValue(at(five, 98 + 120, 700)), 255);
    EXPECT_NEAR(GetGValue(at(five, 98 + 218, 700)), 255 - 141 / 2, 4);
    EXPECT_EQ(at(five, 30, 676), kStatus); // the lowest bit of an A
    EXPECT_EQ(at(five, 30, 700), kStatusOff);
    for (int step = 0; step < 4; ++step)
        EXPECT_EQ(at(five, 20, 326 + 16 * step) == kStatus, step == 1) << step;
    EXPECT_EQ(at(five, 20, 408), kStatusOff); // on odd frames below
    EXPECT_NE(at(five, 20, 292), kStatusOff);
    EXPECT_EQ(at(frames[4], 20, 292), kStatusOff);
    EXPECT_NE(at(frames[4], 464, 32), at(five, 464, 32)); // the orb
}

TEST(DataPad, TextGoesRoundAndLightsFollowFrameAndLine) {
    withPad([](Builder& pad) {
        expectTextThatGoesRound(pad);
        expectLights(pad);
        for (const char* settings : {"UseStatus=0", "Simple=1"}) { // the status belongs to the full case
            const std::vector<Frame> frames = framesOf(pad, "A\nz\n", settings);
            ASSERT_EQ(frames.size(), 2u) << settings;
            for (int y = 325; y < 381; ++y)
                for (int x = 0; x < 381; ++x)
                    ASSERT_EQ(frames[0].colour(x, y), frames[1].colour(x, y)) << settings << x << ' ' << y;
            EXPECT_EQ(at(frames[0], 20, 326), kStatus) << settings; // the marks stay
        }
    });
}

// The grey of the page down the screen's middle, from its upper edge on.
std::vector<int> greysFromTheTop(const Frame& frame) {
    std::vector<int> greys;
    for (int y = 35; y < 180; ++y)
        greys.push_back(GetRValue(frame.colour(190, y)));
    return greys;
}

void expectShadowFromAboveLeft(const Frame& close, const Frame& distant) {
    const std::vector<int> greys = greysFromTheTop(distant);
    EXPECT_EQ(greys.front(), 51); // 80 % taken away
    EXPECT_EQ(greys.back(), 255);
    EXPECT_TRUE(std::ranges::is_sorted(greys));
    for (std::size_t i = 1; i < greys.size(); ++i)
        EXPECT_LT(greys[i] - greys[i - 1], 51) << i; // its edge is soft
    // 18 pixels of the case are nine of the frame.
    const std::vector<int> closeGreys = greysFromTheTop(close);
    EXPECT_TRUE(std::equal(greys.begin() + 9, greys.end(), closeGreys.begin()));
    for (int x = 0; x < 15; ++x) // none beyond the edge that faces the light
        EXPECT_EQ(close.colour(x, 14 - x), kPage) << x;
    EXPECT_EQ(at(distant, 70, 360), RGB(51, 51, 51));
    EXPECT_GT(GetRValue(at(distant, 734, 360)), 51);
    EXPECT_EQ(distant.colour(40, 46), RGB(200 * 51 / 255, 0, 40 * 51 / 255)); // text lies under it
}

TEST(DataPad, ShadowAndAlphaFollowTheCase) {
    withPad([](Builder& pad) {
        const std::string shadow = "UseShadow=1 ShadowDensity=80";
        const Frame close = framesOf(pad, "HHHH", shadow + " ShadowOffset=10").at(0);
        expectShadowFromAboveLeft(close, framesOf(pad, "HHHH", shadow).at(0));
        for (const bool shaded : {false, true}) {
            const Frame frame = framesOf(pad, "H", (shaded ? shadow : "") + " *MainAlphaTrans=1").at(0);
            ASSERT_EQ(frame.bits(), 32);
            EXPECT_EQ(frame.info.alpha, 1u);
            EXPECT_EQ(frame.alpha(0, 0), 0);
            EXPECT_EQ(frame.alpha(380, 380), shaded ? 204 : 0);
            for (const int place : {40, 190, 340})
                for (const int edge : {0, 190, 380})
                    EXPECT_EQ(frame.alpha(place, edge) + frame.alpha(edge, place), 2 * 255) << place << ' ' << edge;
            // The cut of the upper left corner runs through the middle of these pixels.
            for (int x = 5; x < 24 && !shaded; ++x)
                EXPECT_NEAR(frame.alpha(x, 28 - x), 128, 70) << x;
        }
    });
}

} // namespace
