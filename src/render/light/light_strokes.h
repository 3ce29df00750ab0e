// Light of glowing lines: sparks, arcs. It is gathered apart and then added to a picture, so that crossing lines and
// several layers of light sum up and nothing is ever painted over. Core: knows no windows.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace veldran {

// A corner of a glowing line, in pixels; pixel n covers n to n + 1. `width` multiplies the radii of the line's profile
// there, above 0 and up to 1; it changes evenly to the next corner.
struct LightPoint {
    double x;
    double y;
    double width = 1;
};

// One of the nested strokes that make up a glowing line.
struct LightStroke {
    double radius; // pixels
    Colour colour;
    double strength; // of the colour on the line's middle, 0 to 1
};

// Light across a line: a sharp core in a soft body in a wide halo. What is weaker than 2 % is cut off: no eye sees it,
// and it would cost bytes in every frame. A core of strength 0 is none.
class LightProfile {
public:
    LightProfile(const LightStroke& core, const LightStroke& body, const LightStroke& halo);

    using Light = std::array<float, 3>; // blue, green, red: 0 to 255 each

    double reach() const { return reach_; } // pixels from the line to where the light ends
    // Thinner lines would fall between the pixels' middles and come out dotted.
    double leastWidth() const { return leastWidth_; }
    // `distance` is 0 to reach().
    const Light& at(float distance) const { return steps_[static_cast<std::size_t>(distance * kStepsPerPixel)]; }

private:
    static constexpr int kStepsPerPixel = 16;
    double reach_ = 0;
    double leastWidth_ = 0;
    std::vector<Light> steps_;
};

// The part of a picture that light reaches. Right and bottom lie outside.
struct LightArea {
    int left;
    int top;
    int right;
    int bottom;
};

// The light of one picture.
class LightLayer {
public:
    // Throws std::bad_alloc. Both sides are at least 1.
    LightLayer(int width, int height);

    // Adds the light of a line through `points` (one gives a spot), `intensity` times as bright as the profile. Within
    // the line every pixel takes the light of the nearest place, so that joints are no brighter than the rest. Where it
    // is thinner than the profile allows, it is drawn wider and the whole line is dimmer for it.
    void addLine(std::span<const LightPoint> points, const LightProfile& profile, double intensity);

    // Adds `percent` of the light to the pixels of `picture` (24 bits, the layer's size) within `area`; channels end at
    // 255.
    void shineOn(const ImageView& picture, const LightArea& area, int percent) const;

    void clear();

private:
    void measureSegment(const LightPoint& from, const LightPoint& to, double reach);

    int width_;
    int height_;
    std::vector<float> distances_;     // squared, in widths, to the line that is being added
    std::vector<std::uint16_t> light_; // blue, green, red in 64ths of a level
};

} // namespace veldran
