// What editors store: data points, marker lines, colour curves. Figures are worked out by hand.
#include "settings/curve_points.h"
#include "settings/data_points.h"
#include "settings/marker_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace veldran {
namespace {

TEST(DataPoints, AreReadUpToTheFirstMalformedOne) {
    const std::pair<const char*, const char*> cases[] = {{"0,640;14,670;100,640", "0,640;14,670;100,640"},
                                                         {"0,640;14,670;", "0,640;14,670"},
                                                         {" 0, 640 metres; +14,-670", "0,640;14,-670"},
                                                         {"0,640;14;100,640", "0,640"},
                                                         {"0,640;14 ,670", "0,640"},
                                                         {"0,640;;100,640", "0,640"},
                                                         {"99999999999,1", "2147483647,1"},
                                                         {";", ""},
                                                         {"0,640;14,metres;100,640", "0,640"}};
    for (const auto& [text, read] : cases)
        EXPECT_EQ(formatDataPoints(parseDataPoints(text)), read) << text;

    std::string many;
    for (int i = 0; i < 30; ++i)
        many += std::to_string(i) + ",1;";
    EXPECT_TRUE(formatDataPoints(parseDataPoints(many)).ends_with(";22,1;23,1"));
    EXPECT_EQ(editableDataPoints(std::vector<DataPoint>(30)).size(), 24u);
}

TEST(DataPoints, AreOrderedBeforeTheyAreEdited) {
    const std::pair<const char*, const char*> cases[] = {{"", "0,0;100,0"},
                                                         {"0,70", "0,70;100,70"},
                                                         {"100,70", "0,70;100,70"},
                                                         {"50,70", "0,70;50,70;100,70"},
                                                         {"0,1;80,2;20,3;100,4", "0,1;20,3;80,2;100,4"},
                                                         {"0,1;50,2;50,3;100,4", "0,1;50,2;51,3;100,4"},
                                                         {"0,1;100,2;100,3;100,4", "0,1;98,2;99,3;100,4"},
                                                         {"-5,-1;200,2000", "0,0;100,1000"}};
    for (const auto& [text, editable] : cases)
        EXPECT_EQ(formatDataPoints(editableDataPoints(parseDataPoints(text))), editable) << text;
}

TEST(DataPoints, KeepTheirOrderAndEndsWhateverIsDone) {
    std::vector<DataPoint> points = editableDataPoints(parseDataPoints("0,0;50,500;100,0"));
    EXPECT_EQ(insertDataPoint(points, {20, 1500}), 1u);
    EXPECT_FALSE(insertDataPoint(points, {20, 10}));
    EXPECT_FALSE(insertDataPoint(points, {50, 10}));
    EXPECT_EQ(formatDataPoints(points), "0,0;20,1000;50,500;100,0");

    for (const auto& [index, point] : {std::pair{1u, DataPoint{90, -3}}, {0u, {30, 7}}, {3u, {30, 8}}, {4u, {30, 8}}})
        moveDataPoint(points, index, point);
    EXPECT_EQ(formatDataPoints(points), "0,7;49,0;50,500;100,8");
    moveDataPoint(points, 2, {-4, 500});
    EXPECT_EQ(points[2].position, 50);

    EXPECT_TRUE(!removeDataPoint(points, 0) && !removeDataPoint(points, 3) && removeDataPoint(points, 1));
    EXPECT_EQ(formatDataPoints(points), "0,7;50,500;100,8");

    for (int position = 1; points.size() < kMostDataPoints; ++position)
        insertDataPoint(points, {position, 1});
    EXPECT_FALSE(insertDataPoint(points, {90, 1}));
    EXPECT_EQ(insertDataPoint(points, {-10, 1}), std::nullopt);
}

TEST(MarkerLines, AreCheckedBeforeTheyAreWritten) {
    const std::tuple<const char*, int, int, MarkerFault> cases[] = {
        {"", 359, 100, MarkerFault::None},
        {"A,B", 400, 48, MarkerFault::NameHasComma},
        {"A\nB", 0, 48, MarkerFault::NameHasComma},
        {"12345678901234567890123456789012", 0, 0, MarkerFault::None},
        {"123456789012345678901234567890123", 0, 0, MarkerFault::NameTooLong},
        {"A", 360, 48, MarkerFault::Bearing},
        {"A", -1, 48, MarkerFault::Bearing},
        {"A", 0, 101, MarkerFault::Distance},
        {"A", 0, -1, MarkerFault::Distance}};
    for (const auto& [name, bearing, distance, fault] : cases)
        EXPECT_EQ(checkMarker(name, bearing, distance), fault) << name << " " << bearing;
    EXPECT_EQ(formatMarker("AMC981", 48, 7), "AMC981,48,7");
}

TEST(MarkerLines, ComeBackFromTheirFile) {
    using Lines = std::vector<std::string>;
    const Lines lines = {"AMC981,48,48", ",1,2", "XJS912,330,80,220,52"};
    EXPECT_EQ(writeMarkerLines(lines), "AMC981,48,48\r\n,1,2\r\nXJS912,330,80,220,52\r\n");
    EXPECT_EQ(readMarkerLines(writeMarkerLines(lines)), lines);
    EXPECT_EQ(readMarkerLines(""), Lines());
    EXPECT_EQ(readMarkerLines("A,1,2\n\n\rB,3,4"), (Lines{"A,1,2", "B,3,4"}));
    EXPECT_EQ(readMarkerLines("A,1,2\r\n\032B,3,4\r\n"), (Lines{"A,1,2"}));
}

// 33292328 = 8 + 1 x 32 + 0 x 1024 + 24 x 32768 + 31 x 1048576.
TEST(CurvePoints, AreFiveBitsEachFromTheLowestUp) {
    EXPECT_EQ(unpackCurve(33292328), (CurvePoints{8, 1, 0, 24, 31}));
    EXPECT_EQ(packCurve({8, 1, 0, 24, 31}), 33292328u);
    EXPECT_EQ(unpackCurve(0xFE000000), (CurvePoints{0, 0, 0, 0, 0}));
    EXPECT_EQ(packCurve({-1, 0, 0, 0, 40}), 31u << 20);
}

} // namespace
} // namespace veldran
