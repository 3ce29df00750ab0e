// The light that the beam of an oscilloscope leaves on its screen. It is collected in numbers first, so that lines that
// cross and strokes that overlap add up, and shown in the colours of a phosphor then. Core: knows no windows.
#pragma once

#include "render/colour.h"
#include "render/image_view.h"

#include <cstdint>
#include <span>
#include <vector>

namespace veldran {

// Pixels from the top left corner of the light; whole numbers are the middles of pixels.
struct BeamPoint {
    float x;
    float y;
};

class BeamLight {
public:
    // No light yet. Throws std::bad_alloc.
    BeamLight(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }
    void clear();

    // Draws lines from point to point, each in the same time and with the light `perLine`: the longer a line, the
    // weaker it is. 1 a pixel of length is a beam at rest in height. What lies beyond the borders is lost.
    void write(std::span<const BeamPoint> path, float perLine);

    // Widens all that was written to a beam of about three pixels. Throws std::bad_alloc, and then has changed nothing.
    void widen();

    // Covers `picture` (24 bits, of colour `screen` where light falls) with what was written, its top left corner at
    // (left, top): `trace` where the beam is quick, towards white where it lingers. `columns` holds a weight from 0
    // (nothing) to 255 for each column of the light. A trace that is darker than the screen never turns white.
    void show(const ImageView& picture, int left, int top, Colour screen, Colour trace,
              std::span<const std::uint8_t> columns) const;

private:
    void add(float x, float y, float light);

    int width_;
    int height_;
    std::vector<float> light_; // row by row
};

// A spot where the beam stands: white within, `trace` around it, nothing beyond three times `radius` (pixels). All of
// it has the trace's colour where that is darker than the screen.
void drawBeamSpot(const ImageView& picture, BeamPoint at, float radius, Colour screen, Colour trace);

} // namespace veldran
