// The land of the alien overflight: a fractal landscape without ends, its colours under a low sun, and the way of the
// flight over it. Core: draws nothing and knows no windows.
#pragma once

#include "render/colour.h"
#include "settings/curve_points.h"

#include <array>
#include <cstdint>
#include <vector>

namespace veldran {

// Colours of the land by its height: three channels and a brightness, from the lowest land to the highest.
struct TerrainCurves {
    CurvePoints red;
    CurvePoints green;
    CurvePoints blue;
    CurvePoints intensity;
};

// The height of a curve, 0 to 1, at a place from 0 (its left end) to 1; straight between its points.
double curveHeight(const CurvePoints& curve, double place);

// The colour of land at a height of 0 to 1, lit in full.
Colour landColour(const TerrainCurves& curves, double height);

// The land lies on a ring both ways: a column or row beyond its end is one at its start. Lengths are in cells.
class Terrain {
public:
    static constexpr int kColumns = 256;

    // `frames` is 1 or more and decides how long the land is; `ruggedness` is 1 to 10. The same numbers give the same
    // land everywhere. Throws std::bad_alloc.
    Terrain(int seed, int ruggedness, int frames, const TerrainCurves& curves);

    int rows() const { return rows_; }
    double relief() const { return relief_; } // cells between the lowest land and the highest

    // Between the cells' middles, evenly from one to the next. Columns and rows are 0 and more.
    float heightAt(float column, float row) const;
    // Blue, green, red: 0 to 255, sunlight included. `detail` is how much of what is finer than a cell shows, 0 to 1:
    // the land's own slopes once more, many times smaller.
    std::array<float, 3> lightAt(float column, float row, float detail) const;
    static constexpr int kDetailPerCell = 4; // cells of that finer land

    // Columns are far enough from 0 for a view to both sides. Where the flight is `turn` (0 to 1) of its way: a place
    // over the land, a height above the lowest land, and how far the aircraft leans (the horizon's slope). 1 is 0
    // again.
    struct Station {
        double column;
        double row;
        double altitude; // cells, above the land all around
        double bank;
    };
    Station stationAt(double turn) const;

private:
    std::size_t cell(int column, int row) const {
        return static_cast<std::size_t>(row & (rows_ - 1)) * kColumns +
               static_cast<std::size_t>(column & (kColumns - 1));
    }
    // Four cells, and how far a place lies from the first one's middle to the others'.
    struct Place {
        std::size_t cells[4];
        float across;
        float down;

        template <class ValueOf>
        float between(ValueOf valueOf) const {
            const float above = valueOf(cells[0]) + across * (valueOf(cells[1]) - valueOf(cells[0]));
            const float below = valueOf(cells[2]) + across * (valueOf(cells[3]) - valueOf(cells[2]));
            return above + down * (below - above);
        }
    };
    Place placeOf(float column, float row) const;
    void raiseLand(int seed, int ruggedness);
    void levelLand();
    void lightLand(const TerrainCurves& curves);
    void planFlight();

    int rows_; // a power of two
    double relief_;
    std::vector<float> heights_; // cells; row by row
    std::vector<std::array<float, 3>> light_;
    std::vector<float> roughness_;  // of the finer land: what a slope does to the light, 1 on level ground
    std::vector<double> altitudes_; // of the flight, over each row
};

// Which part of the way is done in a frame, 0 to below 1. Long animations fly around the ring more than once.
double flightTurn(int frame, int frames);

} // namespace veldran
