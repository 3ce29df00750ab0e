// Altimeter: altitudes over the animation, the three pointers and the hub, the drum of the pressure window. Drawn in
// the pixels of the face and reduced at the end. Core: draws nothing and knows no windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "instruments/dials/altimeter_parameters.h"
#include "render/colour.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veldran {

// The control of a setting on the altimeter's panel.
template <Setting kSetting>
inline constexpr int kAltimeterControl = kControlOf<kAltimeterParameters, kAltimeterFirstControl, kSetting>;

// One altitude a frame, whole feet, from the text of data points; see pointTable for lists that do not run from 0 to
// 100.
std::vector<int> altimeterAltitudes(std::string_view points, int frames);

// Degrees clockwise from the top, truncated. Below 0 feet they turn the other way.
struct AltimeterAngles {
    int hundreds; // a turn is 1000 feet
    int thousands;
    int tenThousands; // does not start again after a turn
};

AltimeterAngles altimeterAngles(int feet);

// Polygons, to be filled in this order.
struct AltimeterPointers {
    std::vector<CanvasPoint> tenThousands; // short and broad
    std::vector<CanvasPoint> thousands;
    std::vector<CanvasPoint> hundreds; // long and thin
};

// `pad` is the margin around the face.
AltimeterPointers altimeterPointers(int pad, const AltimeterAngles& angles);

struct HubDisc {
    CanvasRect box; // of the circle
    Colour colour;
};

// From the largest disc to the smallest, each over the ones before and over the pointers.
std::array<HubDisc, 12> altimeterHub(int pad);

// A line of text in a box, left-aligned and centred vertically.
struct DrumText {
    std::string text;
    CanvasRect box;
    int escapement; // tenths of a degree, counter-clockwise, as in a font
};

inline constexpr int kDrumTextHeight = 40; // bold Arial

// The pressure and its two neighbours: middle, above, below. Tenths of inches of mercury.
std::array<DrumText, 3> altimeterDrum(int pad, std::uint32_t pressureTenths);

} // namespace veldran
