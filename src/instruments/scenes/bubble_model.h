// Bubble chamber: where the bubbles are in which frame, and their shades. Drawn at twice the output's size and halved
// at the end. Core: draws nothing and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"

#include <cstdint>
#include <vector>

namespace veldran {

struct BubbleParameters {
    int seed;
    int density;
    int width; // of the tank, output pixels
    int height;
    int frames;
    int size;  // diameter of the largest bubbles, output pixels
    int drift; // sideways wobble, per cent of the width
};

struct Bubble {
    int x; // canvas pixels: the centre at rest in frame 0
    int y;
    int diameter;
    int speed;    // tank heights risen over the animation: 1, 2 or 4
    int level;    // how much darker the centre is than the rim: 255, 160 or 128
    double angle; // of the wobble, degrees
};

// A bubble's centre in a frame. It may lie outside of the tank, above it by several heights.
struct BubblePlace {
    CanvasPoint centre;
    int diameter;
    int level;
};

// The bubbles of one animation.
struct BubbleSet {
    int width; // of the tank, canvas pixels
    int height;
    int frames;
    int drift; // how far the wobble reaches, canvas pixels; 0 or negative
    std::vector<Bubble> bubbles;
};

// The same parameters give the same bubbles everywhere. Throws std::bad_alloc when there is no memory for them.
BubbleSet makeBubbleSet(const BubbleParameters& p);

// The bubbles of a set over its frames. The wobble's angles are summed up from frame to frame, so that a frame depends
// on those before it: asking for frames in order is quick, going back starts again from frame 0. Each index always
// gives the same places. After the last frame every bubble has risen by whole heights and wobbled once.
class BubbleMotion {
public:
    explicit BubbleMotion(BubbleSet set);

    // In drawing order. `frame` is 0 or more.
    std::vector<BubblePlace> places(int frame);

private:
    void advanceTo(int frame);

    BubbleSet set_;
    std::vector<Bubble> first_; // as they are in frame 0
    int frame_ = 0;
};

// The row in which a sprite's row lands: rows above the tank come back at its bottom. Rows at `height` and below are
// not drawn. `height` is above 0.
constexpr int wrappedRow(int row, int height) {
    return row >= 0 ? row : (height - -row % height) % height;
}

// The greys of a bubble's sprite, from the rim inwards: disc k is inset by k pixels on all sides of the square.
std::vector<std::uint8_t> bubbleGreys(int diameter, int level);

struct TankGeometry {
    int sideBevel; // columns
    int endBevel;  // rows
    int corner;    // width and height of the corner's ellipse
};

TankGeometry tankGeometry(int width, int height);

// What the pixels of a bevel are multiplied by, in 255ths, from the tank's border inwards. `depth` is 1 to 255.
std::vector<int> bevelFactors(int width, int depth);

} // namespace veldran
