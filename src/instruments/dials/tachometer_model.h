// Tachometer: speeds over the animation, the needle at a speed. Drawn in the pixels of the dial face and reduced at the
// end. Core: draws nothing and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "instruments/dials/tachometer_parameters.h"

#include <string_view>
#include <vector>

namespace veldran {

// The control of a setting on the tachometer's panel.
template <Setting kSetting>
inline constexpr int kTachometerControl = kControlOf<kTachometerParameters, kTachometerFirstControl, kSetting>;

// Speeds are fractions of full scale: 0 is rest, 1 the needle's stop.
inline constexpr double kTachometerStillSpeed = 0.6;

// One speed a frame from the text of data points; see pointTable for lists that do not run from 0 to 100. Characters
// from the 260th on are not read. Speeds beyond the stop stay.
std::vector<double> tachometerSpeeds(std::string_view points, int frames);

// A line from pivot to tip with a pen as wide as two of the geometry's units.
struct TachometerNeedle {
    CanvasPoint pivot;
    CanvasPoint tip;
};

// Turns clockwise in whole degrees, by 241 at full scale. `pad` is the margin around the face.
TachometerNeedle tachometerNeedle(int pad, double speed);

} // namespace veldran
