// The radar's pictures, measured in true-colour frames: sizes, counts, sweep, hub, markers and their labels.
// Colours are chosen so that each channel tells one thing: green the sweep, blue the graticule, red the markers.
#include "recording_host.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

using namespace recording;

constexpr char kTellingColours[] = "MainEffect = 15\nTruecolour = 1\nMainRadarGreenColor = 65280\n"
                                   "MainRadarBlackColor = 0\nMainRadarWhiteColor = 16711680\n"
                                   "MainRadarMarkerColor = 255\n";
constexpr int kSixty = 33; // choices of the increment list
constexpr int kMinusSixty = 0;

std::string numbered(const char* key, int value) {
    return std::string(key) + " = " + std::to_string(value) + "\n";
}

std::vector<Frame> buildRadar(const std::string& settings, std::vector<Step> steps = {}) {
    Session session;
    session.settings = kTellingColours + settings;
    session.steps = std::move(steps);
    session.steps.push_back(pressing(kBuild));
    Recording seen = run(session);
    EXPECT_TRUE(seen.boxes.empty());
    EXPECT_TRUE(seen.faults.empty());
    return std::move(seen.frames);
}

struct Place {
    int x;
    int y;
};

// The pixel at a bearing (degrees clockwise from the top) and a distance from the middle of a square frame.
Place placeAt(const Frame& frame, double bearing, double radius) {
    const double angle = bearing * std::numbers::pi / 180;
    const double middle = frame.width() / 2.0;
    return {static_cast<int>(middle + radius * std::sin(angle)), static_cast<int>(middle - radius * std::cos(angle))};
}

// The sweep's mean brightness along a ray of a frame of half the artwork's size, 0 to 255, as if no graticule were on
// it: ink takes the same share of the light that it gives to blue. The hub ends at 28 pixels and the sweep at 113.
double brightness(const Frame& frame, double bearing) {
    double light = 0;
    double clear = 0;
    for (int radius = 35; radius < 105; ++radius) {
        const Place at = placeAt(frame, bearing, radius);
        const COLORREF colour = frame.colour(at.x, at.y);
        light += GetGValue(colour);
        clear += 255 - GetBValue(colour);
    }
    return clear > 0 ? 255 * light / clear : 0;
}

TEST(Radar, SizeAndPaddingGiveTheFrameSize) {
    // Artwork pixels to one of the frame: 526 / size, cut. Sides: (526 + 2 x unit x padding) x (100 / unit cut) %.
    const int cases[][3] = {
        {175, 2, 178},  // 3: 538 x 33 % is 177.54
        {1000, 0, 267}, // limited to 256 and 2
        {0, 10, 73},    // limited to 48: 726 x 10 % is 72.6
    };
    for (const auto& [size, padding, side] : cases) {
        SCOPED_TRACE(size);
        const std::vector<Frame> frames =
            buildRadar(numbered("MainRadarSize", size) + numbered("MainRadarPadding", padding) +
                       numbered("MainRadarIncrement", kSixty));
        ASSERT_EQ(frames.size(), 6u);
        for (const Frame& frame : frames) {
            EXPECT_EQ(frame.width(), side);
            EXPECT_EQ(frame.height(), side);
            for (const int x : {0, side - 1})
                for (const int y : {0, side - 1})
                    EXPECT_EQ(frame.colour(x, y), 0x606060u) << x << ' ' << y;
        }
    }
}

struct SweepCase {
    int choice;
    std::size_t frames;
    int step; // degrees clockwise from frame to frame
    int tail; // on which side of the sweep its glow lies: -1 counter-clockwise of it, 1 clockwise
};

TEST(Radar, SweepTurnsWithItsTailBehindIt) {
    const SweepCase cases[] = {{kSixty, 6, 60, -1}, {kMinusSixty, 6, -60, 1}, {29, 15, 24, -1}};
    for (const SweepCase& row : cases) {
        SCOPED_TRACE(row.choice);
        const std::vector<Frame> frames =
            buildRadar("MainRadarSize = 256\nMainRadarAngle = 60\nMainRadarShowMarkers = 0\n",
                       {[&](HWND dialog) { setChoice(dialog, kRadarIncrement, row.choice); }});
        ASSERT_EQ(frames.size(), row.frames);
        for (std::size_t i = 0; i < frames.size(); i += 2) {
            SCOPED_TRACE(i);
            const double angle = static_cast<int>(i) * row.step;
            double best = 0;
            double brightest = -1;
            for (double offset = -179; offset <= 180; offset += 1)
                if (const double value = brightness(frames[i], angle + offset); value > brightest) {
                    brightest = value;
                    best = offset;
                }
            EXPECT_NEAR(best, 0, 4);
            EXPECT_GT(brightest, 190);
            // Half-way down the tail half of the light is left; before the sweep and behind the tail there is none.
            EXPECT_NEAR(brightness(frames[i], angle + row.tail * 30), 127, 25);
            EXPECT_NEAR(brightness(frames[i], angle + row.tail * 75), 0, 1);
            EXPECT_NEAR(brightness(frames[i], angle - row.tail * 8), 0, 1);
        }
    }
}

TEST(Radar, ScreenAndGraticuleHaveTheirColours) {
    const Frame frame = buildRadar("MainRadarSize = 256\nMainRadarShowMarkers = 0\nMainRadarIncrement = 33\n"
                                   "MainRadarAngle = 30\n")[3];
    int inked = 0;
    int plain = 0;
    for (int y = 0; y < 283; ++y)
        for (int x = 0; x < 283; ++x) {
            const double radius = std::hypot(x - 141, y - 141);
            if (radius > 127)
                continue; // the screen ends at 129
            ASSERT_TRUE(radius > 26 || GetGValue(frame.colour(x, y)) == 0) << "lit hub at " << x << ' ' << y;
            ASSERT_EQ(GetRValue(frame.colour(x, y)), 0) << x << ' ' << y;
            inked += GetBValue(frame.colour(x, y)) > 127;
            plain += GetBValue(frame.colour(x, y)) < 16;
        }
    EXPECT_GT(inked, 500);                      // rings and ticks are there
    EXPECT_GT(plain, 25000);                    // and do not hide the screen of some 50000 pixels
    EXPECT_EQ(frame.colour(141, 8), 0x606060u); // above the screen
}

// Frames of half the artwork's size with these markers; frame i stands at 60 x i degrees, its tail 60 degrees long.
std::vector<Frame> buildMarkers(const std::vector<std::string>& lines, const std::string& settings = "") {
    return buildRadar("MainRadarSize = 256\nMainRadarAngle = 60\nMainRadarIncrement = 33\n" + settings,
                      {[&](HWND dialog) { setLines(dialog, kRadarMarkerList, lines); }});
}

// The middle of the frame is artwork pixel 283; squares reach from 6 before a marker's place to 5 behind it.
TEST(Radar, MarkerSquaresStandAtTheirPlaces) {
    const struct {
        const char* line;
        Place place; // artwork pixels from the middle, or beyond the frame
    } cases[] = {
        {",90,50", {112, 0}},        // 112.99999 and 0.00015, cut: pi is a little short
        {",270,25,99,99", {-55, 0}}, // a quarter is 56, cut again
        {",-30,80", {-89, -155}},    // 180 x 0.5 and 180 x 0.86603
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.line);
        const std::vector<Frame> frames = buildMarkers({row.line}, "MainRadarPingMarkers = 0\n");
        ASSERT_EQ(frames.size(), 6u);
        const Place first{283 + row.place.x - 6, 283 + row.place.y - 6};
        for (const Frame& frame : frames)
            for (int y = 0; y < 283; ++y)
                for (int x = 0; x < 283; ++x) {
                    const bool inside =
                        2 * x >= first.x && 2 * x + 1 < first.x + 12 && 2 * y >= first.y && 2 * y + 1 < first.y + 12;
                    const bool outside =
                        2 * x + 1 < first.x || 2 * x >= first.x + 12 || 2 * y + 1 < first.y || 2 * y >= first.y + 12;
                    const COLORREF colour = frame.colour(x, y);
                    ASSERT_TRUE(!inside || colour == 0x0000FF) << x << ' ' << y;
                    ASSERT_TRUE(!outside || GetRValue(colour) == 0 || std::hypot(x - 141, y - 141) > 127)
                        << x << ' ' << y;
                }
    }
}

TEST(Radar, MarkersTakeTheGlowOfTheSweep) {
    // A red marker with a blue flash: blue is the glow, red what is left of it.
    const struct {
        int bearing;
        int distance;
        int glow; // in the frame at 60 degrees
        int tolerance;
    } cases[] = {{60, 70, 254, 5}, {30, 70, 127, 8}, {90, 70, 0, 0}, {60, 115, 0, 0}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.bearing << ' ' << row.distance);
        const std::string line = "," + std::to_string(row.bearing) + "," + std::to_string(row.distance);
        for (const bool pings : {true, false}) {
            const std::vector<Frame> frames = buildMarkers({line}, pings ? "" : "MainRadarPingMarkers = 0\n");
            ASSERT_EQ(frames.size(), 6u);
            const Place at = placeAt(frames[1], row.bearing, row.distance * 1.13);
            const COLORREF colour = frames[1].colour(at.x, at.y);
            EXPECT_NEAR(GetBValue(colour), pings ? row.glow : 0, row.tolerance);
            EXPECT_NEAR(GetRValue(colour), 255 - (pings ? row.glow : 0), row.tolerance);
            EXPECT_EQ(GetGValue(colour), 0);
        }
    }
}

TEST(Radar, LabelsStandOnTheSideOfTheMiddle) {
    for (const int bearing : {45, 135, 225, 315}) {
        SCOPED_TRACE(bearing);
        const std::string rest = "," + std::to_string(bearing) + ",70";
        const Frame bare = buildMarkers({rest}, "MainRadarPingMarkers = 0\n")[3];
        const Frame named = buildMarkers({"ABC" + rest}, "MainRadarPingMarkers = 0\n")[3];
        const Place marker = placeAt(bare, bearing, 79.1);
        int count = 0;
        Place sum{0, 0};
        for (int y = 0; y < 283; ++y)
            for (int x = 0; x < 283; ++x)
                if (named.colour(x, y) != bare.colour(x, y)) {
                    ++count;
                    sum = {sum.x + x - marker.x, sum.y + y - marker.y};
                }
        ASSERT_GT(count, 100);
        EXPECT_EQ(sum.x < 0, bearing < 180) << sum.x / count;
        EXPECT_EQ(sum.y<0, bearing> 90 && bearing < 270) << sum.y / count;
        EXPECT_GT(std::abs(sum.x / count), 7 + 4); // beyond the gap, by some of the text's width
    }
}

TEST(Radar, MarkersOfItsOwnStrangeOnesAndNone) {
    const std::vector<std::string> lines = {
        "", "NAME", std::string(300, 'N') + ",10,50", "BIG,99999999999,-99999999999", "FAR,45,100000", "%s%n,1,1"};
    EXPECT_EQ(buildMarkers(lines).size(), 6u);
    const Frame first = buildRadar("MainRadarSize = 256\nMainRadarIncrement = 33\nMainRadarPingMarkers = 0\n")[0];
    for (const auto& [bearing, distance] : {std::pair{48, 48}, {210, 45}, {330, 80}}) { // of those that come with it
        const Place at = placeAt(first, bearing, distance * 1.13);
        EXPECT_EQ(first.colour(at.x, at.y), 0x0000FFu) << bearing;
    }
    const std::vector<Frame> none = buildMarkers({});
    const std::vector<Frame> hidden = buildMarkers({"ABC,10,50"}, "MainRadarShowMarkers = 0\n");
    ASSERT_EQ(none.size(), 6u);
    ASSERT_EQ(hidden.size(), 6u);
    EXPECT_EQ(none[0].bitmap, hidden[0].bitmap);
}

} // namespace
