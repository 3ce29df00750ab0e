// The radar's pictures, measured in true-colour frames: sweep, hub, markers and their labels.
// Colours are chosen so that each channel tells one thing: green the sweep, blue the graticule, red the markers.
#include "built_frames.h"

#include <cmath>
#include <numbers>

namespace {

using namespace recording;

// Of half the artwork's size; frame i stands at 60 x i degrees.
constexpr char kTellingColours[] =
    "*Truecolour=1 GreenColor=#00FF00 BlackColor=0 WhiteColor=#0000FF MarkerColor=#FF0000 "
    "Size=256 Angle=60 Increment=33 ";

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

// `tail`: on which side of the sweep its glow lies, -1 counter-clockwise of it, 1 clockwise.
void expectSweep(const Frame& frame, double angle, int tail) {
    double best = 0;
    double brightest = -1;
    for (double offset = -179; offset <= 180; offset += 1)
        if (const double value = brightness(frame, angle + offset); value > brightest) {
            brightest = value;
            best = offset;
        }
    EXPECT_NEAR(best, 0, 4);
    EXPECT_GT(brightest, 190);
    // Half-way down the tail half of the light is left; before the sweep and behind the tail there is none.
    EXPECT_NEAR(brightness(frame, angle + tail * 30), 127, 25);
    EXPECT_NEAR(brightness(frame, angle + tail * 75), 0, 1);
    EXPECT_NEAR(brightness(frame, angle - tail * 8), 0, 1);
}

void expectScreenAndGraticule(const Frame& frame) {
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

TEST(Radar, SweepTurnsOverScreenAndGraticuleWithItsTailBehindIt) {
    const struct {
        const char* choice; // of the increment list
        std::size_t frames;
        int step; // degrees clockwise from frame to frame
    } cases[] = {{"0", 6, -60}, {"29", 15, 24}};
    withBuilder("MainRadar", std::string(kTellingColours) + "ShowMarkers=0", [&](Builder& radar) {
        for (const auto& row : cases) {
            SCOPED_TRACE(row.choice);
            const std::vector<Frame> frames = radar.frames(std::string("Increment=") + row.choice);
            ASSERT_EQ(frames.size(), row.frames);
            for (std::size_t i = 0; i < frames.size(); i += 2)
                expectSweep(frames[i], static_cast<int>(i) * row.step, row.step < 0 ? 1 : -1);
        }
        expectScreenAndGraticule(radar.frame("Angle=30", 3));
    });
}

std::vector<Frame> framesWith(Builder& radar, const std::vector<std::string>& markers,
                              const std::string& settings = "PingMarkers=0") {
    setLines(radar.dialog(), kRadarMarkerList, markers);
    std::vector<Frame> frames = radar.frames(settings);
    if (frames.size() != 6)
        throw std::runtime_error("frames are missing");
    return frames;
}

// Squares of twelve artwork pixels, six of the frame, each with a red marker and a blue flash: blue is the glow, red
// what is left of it. Beside them there is no red.
void expectSquaresThatTakeTheGlow(Builder& radar) {
    const struct {
        int bearing;
        int distance;
        int glow; // in the frame at 60 degrees
        int tolerance;
    } cases[] = {{60, 70, 254, 5}, {30, 70, 127, 8}, {90, 70, 0, 0}, {60, 115, 0, 0}};
    std::vector<std::string> lines;
    for (const auto& row : cases)
        lines.push_back("," + std::to_string(row.bearing) + "," + std::to_string(row.distance));
    for (const bool pings : {true, false}) {
        const std::vector<Frame> frames = framesWith(radar, lines, pings ? "PingMarkers=1" : "PingMarkers=0");
        for (const auto& row : cases) {
            SCOPED_TRACE(testing::Message() << row.bearing << ' ' << row.distance);
            const Place at = placeAt(frames[1], row.bearing, row.distance * 1.13);
            const COLORREF colour = frames[1].colour(at.x, at.y);
            EXPECT_NEAR(GetBValue(colour), pings ? row.glow : 0, row.tolerance);
            EXPECT_NEAR(GetRValue(colour), 255 - (pings ? row.glow : 0), row.tolerance);
            EXPECT_EQ(GetGValue(colour), 0);
            if (row.distance > 100)
                continue; // on the panel, which has red of its own
            int red = 0;  // of frame 4, in which no marker is lit
            for (int y = at.y - 4; y <= at.y + 4; ++y)
                for (int x = at.x - 4; x <= at.x + 4; ++x)
                    red += GetRValue(frames[4].colour(x, y));
            EXPECT_NEAR(red, 36 * 255, 255) << red / 255.0;
        }
    }
}

// Labels of four markers at once; what they change lies in the quarter of their own.
void expectLabelsOnTheSideOfTheMiddle(Builder& radar) {
    const auto frameWith = [&](const std::string& name) {
        return framesWith(radar, {name + ",45,70", name + ",135,70", name + ",225,70", name + ",315,70"})[3];
    };
    const Frame bare = frameWith("");
    const Frame named = frameWith("ABC");
    for (const int bearing : {45, 135, 225, 315}) {
        SCOPED_TRACE(bearing);
        const Place marker = placeAt(bare, bearing, 79.1);
        int count = 0;
        Place sum{0, 0};
        for (int y = marker.y < 141 ? 0 : 141; y < (marker.y < 141 ? 141 : 283); ++y)
            for (int x = marker.x < 141 ? 0 : 141; x < (marker.x < 141 ? 141 : 283); ++x)
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

TEST(Radar, MarkersGlowAndHaveLabelsHoweverTheyAreNamed) {
    withBuilder("MainRadar", kTellingColours, [](Builder& radar) {
        const Frame first = radar.frame("PingMarkers=0");
        for (const auto& [bearing, distance] :
             {std::pair{48, 48}, {210, 45}, {330, 80}}) { // of those that come with it
            const Place at = placeAt(first, bearing, distance * 1.13);
            EXPECT_EQ(first.colour(at.x, at.y), 0x0000FFu) << bearing;
        }
        expectSquaresThatTakeTheGlow(radar);
        expectLabelsOnTheSideOfTheMiddle(radar);
        framesWith(radar, {"", "NAME", std::string(300, 'N') + ",10,50", "BIG,99999999999,-99999999999",
                           "FAR,45,100000", "%s%n,1,1"});
        EXPECT_EQ(framesWith(radar, {})[0].bitmap, framesWith(radar, {"ABC,10,50"}, "ShowMarkers=0")[0].bitmap);
    });
}

} // namespace
