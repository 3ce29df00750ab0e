// The alien land and the view of it: rings, seeds, heights, a flight that never touches ground, what a view covers.
#include "instruments/scenes/alien_view.h"
#include "raster.h"

#include <gtest/gtest.h>

#include <cmath>

namespace veldran {
namespace {

constexpr CurvePoints kRising{0, 8, 16, 24, 31};
constexpr CurvePoints kFullView{31, 31, 31, 31, 31};
constexpr CurvePoints kNone{};
constexpr TerrainCurves kGreyLand{kRising, kRising, kRising, kFullView};

TEST(Curves, AreStraightBetweenTheirPoints) {
    constexpr CurvePoints kBent{31, 0, 0, 10, 20};
    for (const auto& [at, height] : {std::pair{-1., 1.}, {0.125, 0.5}, {0.875, 15. / 31}, {2., 20. / 31}})
        EXPECT_DOUBLE_EQ(curveHeight(kBent, at), height) << at;
    EXPECT_EQ(landColour({kFullView, kNone, kBent, kFullView}, 0), makeColour(255, 0, 255));
    EXPECT_EQ(landColour({kFullView, kFullView, kFullView, kNone}, 0.5), 0u);
}

TEST(Terrain, SameSeedSameLandOnARingBothWays) {
    const Terrain land(10632, 4, 128, kGreyLand), again(10632, 4, 128, kGreyLand);
    const auto rows = static_cast<float>(land.rows());
    for (float row = 0; row < 256; row += 7.5f)
        for (float column = 0; column < 256; column += 5.25f) {
            ASSERT_EQ(land.heightAt(column, row), again.heightAt(column + 256, row + rows));
            for (const float detail : {0.0f, 1.0f})
                ASSERT_EQ(land.lightAt(column, row, detail), again.lightAt(column + 256, row + rows, detail));
        }
    for (float column = 0; column < 256; ++column)
        EXPECT_LT(std::abs(land.heightAt(column, rows - 1) - land.heightAt(column, 0)), 10); // no cliff
}

TEST(Terrain, RuggednessRaisesAndRoughensIt) {
    double before = 0;
    for (const int ruggedness : {1, 4, 10}) {
        const Terrain land(1000, ruggedness, 8, kGreyLand);
        float highest = 0;
        double slope = 0;
        for (int row = 0; row < land.rows(); ++row)
            for (int column = 0; column < Terrain::kColumns; ++column) {
                const float height = land.heightAt(float(column), float(row));
                ASSERT_GE(height, 0);
                highest = std::max(highest, height);
                slope += std::abs(height - land.heightAt(float(column + 1), float(row)));
            }
        EXPECT_NEAR(highest, land.relief(), 1e-3);
        EXPECT_GT(slope, 1.5 * before);
        before = slope;
    }
}

TEST(Flight, ClosesAndStaysAboveGround) {
    for (const int frames : {8, 128, 700, 32760}) {
        const double step = flightTurn(1, frames);
        EXPECT_TRUE(flightTurn(0, frames) == 0 && step > 0);
        EXPECT_NEAR(flightTurn(frames - 1, frames), 1 - step, 1e-9); // the seam is a step like the first
    }
    for (const int ruggedness : {1, 10})
        for (const int seed : {1000, 10632, 32760}) {
            const Terrain land(seed, ruggedness, 128, kGreyLand);
            for (double turn = 0; turn < 1; turn += 0.001) {
                const Terrain::Station at = land.stationAt(turn);
                ASSERT_GT(at.altitude, land.heightAt(float(at.column), float(at.row)) + 2) << turn;
            }
            const Terrain::Station first = land.stationAt(0), last = land.stationAt(1 - 1e-9);
            for (const auto part : {&Terrain::Station::altitude, &Terrain::Station::column, &Terrain::Station::bank})
                EXPECT_NEAR(first.*part, last.*part, 1e-3);
        }
}

TEST(AlienView, CoversThePictureAndFadesIntoHaze) {
    const Terrain land(10632, 4, 16, {kFullView, kNone, kNone, kFullView}); // red
    const AlienView view(land, {0x400000, 0x00FF00, 0x0000FF}, 131, 131);
    Raster picture(131, 131, 24, RowOrder::BottomUp), again(131, 131, 24, RowOrder::TopDown, 0);
    for (const Raster* raster : {&picture, &again})
        view.draw(raster->view, land.stationAt(0.4));
    for (int y = 0; y < 131; ++y)
        ASSERT_EQ(picture.row(y), again.row(y)); // every pixel is written
    EXPECT_TRUE(picture.paddingIsWhole());
    const std::uint8_t* near = picture.view.pixel(65, 130);
    EXPECT_GT(near[2], 2 * near[1]); // its own colour, hardly any haze
    EXPECT_GT(picture.view.pixel(65, 0)[0], 16);
}

} // namespace
} // namespace veldran
