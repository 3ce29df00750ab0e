// The view out of the aircraft over the alien land: sky, sun, land in perspective, haze. Core: knows no windows.
#pragma once

#include "instruments/scenes/alien_terrain.h"
#include "render/image_view.h"

#include <vector>

namespace veldran {

// Colours of sky and haze, mixed from those of the land.
struct AlienSky {
    Colour zenith;
    Colour haze; // at the horizon, and what far land fades into
    Colour sun;
};

AlienSky skyOver(const TerrainCurves& curves);

// Draws views of one size over one land, which must outlive the object.
class AlienView {
public:
    // Throws std::bad_alloc.
    AlienView(const Terrain& terrain, const AlienSky& sky, int width, int height);

    // Fills `picture` (24 bits, of the size given before).
    void draw(const ImageView& picture, const Terrain::Station& station) const;

private:
    // A step of every ray, from near to far.
    struct Step {
        float distance; // cells
        float scale;    // pixels that a cell fills
        float clear;    // how much of the land's light the haze leaves, 0 to 1
        float detail;   // how much of the land's finer slopes is not too small to be seen, 0 to 1
    };

    void drawSky(const ImageView& picture, const Terrain::Station& station) const;
    void drawColumn(const ImageView& picture, const Terrain::Station& station, int x) const;
    double horizonAt(const Terrain::Station& station, int x) const;

    const Terrain& terrain_;
    AlienSky sky_;
    int width_;
    int height_;
    std::vector<Step> steps_;
    std::vector<Colour> skyAbove_;        // by the pixels above the horizon
    std::vector<std::uint8_t> sunAround_; // weight of the sun's colour by the squared distance from its middle, pixels
};

} // namespace veldran
