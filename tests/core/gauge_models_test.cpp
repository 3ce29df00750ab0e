// The numbers of tachometer and altimeter: values over the animation, needle and pointers. Computed by a script or by
// hand. Draws nothing.
#include "instruments/altimeter_model.h"
#include "instruments/tachometer_model.h"

#include <gtest/gtest.h>

namespace veldran {
namespace {

TEST(ArtworkGeometry, IsTruncatedToWholeUnits) {
    const ArtworkGeometry g = artworkGeometry(558, 761, 160, 10);
    EXPECT_EQ((std::array{g.unit, g.pad, g.width, g.height, g.percent}), (std::array{4, 40, 638, 841, 25}));
    EXPECT_EQ(artworkGeometry(762, 762, 0, 0).percent, 1); // sizes that no panel offers
    EXPECT_EQ(artworkGeometry(762, 762, 763, 0).percent, 100);
}

TEST(TachometerModel, SpeedsFollowThePoints) {
    const std::vector<double> speeds =
        tachometerSpeeds("0,140;14,200;20,680;39,870;44,220;67,310;80,570;92,680;100,140", 64);
    for (const auto& [frame, speed] : {std::pair{4, .17}, {12, .68}, {30, .23285714}, {63, .23}})
        EXPECT_NEAR(speeds.at(static_cast<std::size_t>(frame)), speed, 1e-8) << frame;
}

TEST(TachometerModel, OddListsStayInTheTable) {
    const struct {
        const char* points;
        int frames;
        std::vector<double> speeds;
    } cases[] = {
        {"50,100;100,500", 5, {.1, .1 + .4 / 3, .1 + .8 / 3, 0, 0}}, // moved to the start
        {"0,100;80,200;20,300;100,400", 10, {.1, .1125, .125, .1375, .15, .1625, .175, .1875, .3, .3125}}, // one back
        {"0,100;50,200;50,300;100,400", 4, {.1, .15, .3, .35}},                                            // a jump
        {"-2147483648,1000;2147483647,1000;-2147483648,0;100,0", 3, {1, 1, 1}},
        {"0,0;29,500;100,1000", 0, {}},
    };
    for (const auto& c : cases) {
        const std::vector<double> speeds = tachometerSpeeds(c.points, c.frames);
        ASSERT_EQ(speeds.size(), c.speeds.size()) << c.points;
        for (std::size_t i = 0; i < speeds.size(); ++i)
            EXPECT_NEAR(speeds[i], c.speeds[i], 1e-12) << c.points << " frame " << i;
    }
    EXPECT_EQ(tachometerSpeeds("0,0;29,500;100,1000", 100)[28], .5); // 100 x 0.29 is truncated to 28
    const std::string late = "0,500;" + std::string(246, ' ') + "100,500";
    EXPECT_EQ(tachometerSpeeds(late, 2)[1], .5);
    EXPECT_EQ(tachometerSpeeds(' ' + late + '0', 2)[1], .275); // cut to 50 thousandths
}

TEST(TachometerModel, NeedleTurnsInWholeDegrees) {
    const struct {
        double speed;
        CanvasPoint tip;
    } cases[] = {{0, {74, 386}}, {.6, {365, 64}}, {1, {467, 389}}, {-.25, {272, 500}}};
    for (const auto& c : cases) {
        EXPECT_EQ(tachometerNeedle(50, c.speed).tip, (CanvasPoint{c.tip.x + 50, c.tip.y + 50})) << c.speed;
    }
    EXPECT_EQ(tachometerNeedle(50, 0).pivot, (CanvasPoint{322, 322}));
}

TEST(AltimeterModel, AltitudesFollowThePoints) {
    const std::vector<int> feet = altimeterAltitudes("0,640;14,670;39,680;67,610;80,560;92,570;100,640", 128);
    ASSERT_EQ(feet.size(), 128u);
    EXPECT_EQ((std::array{feet[0], feet[1], feet[5], feet[16], feet[17], feet[64], feet[127]}),
              (std::array{16000, 16044, 16220, 16705, 16750, 16270, 15840}));
    // Exactly 15 in decimal figures; the order of the arithmetic leaves it just below.
    EXPECT_EQ(altimeterAltitudes("0,0;100,10", 50)[3], 14);
    EXPECT_EQ(altimeterAltitudes("0,0", 8), std::vector<int>(8, 0));
    EXPECT_EQ(altimeterAltitudes("0,2147483647;100,2147483647", 8), std::vector<int>(8, INT32_MAX));
}

TEST(AltimeterModel, PointersPointWhereTheAltitudeIs) {
    const struct {
        int feet;
        std::array<int, 3> degrees; // hundreds, thousands, ten thousands
    } cases[] = {{0, {0, 0, 0}},        {21400, {144, 50, 77}}, {999, {359, 35, 3}},
                 {100025, {9, 0, 360}}, {-250, {-90, -9, 0}},   {40000, {0, 0, 144}}};
    for (const auto& c : cases) {
        const AltimeterAngles angles = altimeterAngles(c.feet);
        EXPECT_EQ((std::array{angles.hundreds, angles.thousands, angles.tenThousands}), c.degrees) << c.feet;
    }
}

TEST(AltimeterModel, DrumShowsThePressureAndItsNeighbours) {
    const auto drum = altimeterDrum(20, 299);
    EXPECT_EQ((std::array{drum[0].text, drum[1].text, drum[2].text}),
              (std::array<std::string, 3>{"  29.9", " 29.8", " 30.0"}));
    EXPECT_EQ((std::array{drum[1].escapement, drum[2].escapement}), (std::array{70, -70}));
    EXPECT_EQ(altimeterDrum(0, UINT32_MAX)[2].text, " 429496729.6");
}

// A pointer is as wide to the left as to the right, its tip points where its angle says, and a full turn and the margin
// only move it.
TEST(AltimeterModel, PointersAndHubStandAboutThePivot) {
    const AltimeterPointers up = altimeterPointers(0, {0, 0, 0});
    const AltimeterPointers right = altimeterPointers(10, {90, 450, -270});
    const std::vector<CanvasPoint>* const pairs[][2] = {
        {&up.hundreds, &right.hundreds}, {&up.thousands, &right.thousands}, {&up.tenThousands, &right.tenThousands}};
    int reach = 400;
    for (const auto& [upright, turned] : pairs) {
        const std::size_t corners = upright->size();
        EXPECT_EQ(upright->front().x, 384);
        EXPECT_LT(384 - upright->front().y, reach); // the longest first
        reach = 384 - upright->front().y;
        EXPECT_EQ(turned->front(), (CanvasPoint{394 + reach, 394}));
        for (std::size_t i = 1; i < corners; ++i) {
            EXPECT_EQ((*upright)[i].x + (*upright)[corners - i].x, 2 * 384);
            EXPECT_EQ((*upright)[i].y, (*upright)[corners - i].y);
            EXPECT_EQ((*turned)[i], (CanvasPoint{394 + 384 - (*upright)[i].y, 394 + (*upright)[i].x - 384}));
        }
    }
    const std::array<HubDisc, 12> hub = altimeterHub(7);
    EXPECT_EQ(hub[0].colour, makeColour(200, 200, 200));
    EXPECT_EQ(hub[11].colour, makeColour(31, 31, 31));
    for (const HubDisc& disc : hub)
        EXPECT_EQ(disc.box.left + disc.box.right, 2 * (384 + 7));
    EXPECT_EQ(hub[0].box.right - hub[0].box.left, 88);
    EXPECT_EQ(hub[11].box.bottom - hub[11].box.top, 44);
}

} // namespace
} // namespace veldran
