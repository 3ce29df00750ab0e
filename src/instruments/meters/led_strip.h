// A row of LEDs in its channel: painted once in each of its states; a frame copies parts of them. Core: knows no
// windows.
#pragma once

#include "instruments/artwork_geometry.h"
#include "render/colour.h"
#include "render/stored_picture.h"

#include <cstdint>

namespace veldran {

enum class LedDirection : std::uint8_t { Up, Right };
enum class LedShape : std::uint8_t { Plain, Round, Tube }; // in the order of the choices

// Canvas pixels. "Along" is the way in which a rising level lights LEDs, "across" the other.
struct LedStripGeometry {
    LedDirection direction;
    int leds;     // at least 1
    int ledAlong; // an LED's size
    int ledAcross;
    int gap;    // from one LED to the next
    int edge;   // before the first LED and behind the last
    int across; // the channel's breadth; LEDs stand in its middle
    int unit;   // canvas pixels to an output pixel

    int along() const { return 2 * edge + leds * (ledAlong + gap) - gap; }
    int width() const { return direction == LedDirection::Up ? across : along(); }
    int height() const { return direction == LedDirection::Up ? along() : across; }
    bool operator==(const LedStripGeometry&) const = default;
};

struct LedLook {
    Colour green;
    Colour yellow;
    Colour red;
    Colour floor; // of the channel
    LedShape shape;
    int yellowLevel; // LEDs from this level on are yellow, of 255
    int redLevel;
    int darkPercent; // of its colour that an LED shows while it is off
    bool showDark;
    bool incandescent; // lit LEDs shine on what is around them, and take a frame to go out
};

// How many of `leds` a level (0 to 255) lights. An LED stands for the level at its middle and lights when that is
// reached.
int litLeds(int level, int leds);

class LedStrip {
public:
    // Throws std::bad_alloc.
    LedStrip(const LedStripGeometry& geometry, const LedLook& look);
    LedStrip(const LedStrip&) = delete;
    LedStrip& operator=(const LedStrip&) = delete;

    // Draws the strip with its top left pixel at `at` of `picture` (24 bits): `lit` LEDs are on, those from there to
    // `fading` are going out. Both are at most the number of LEDs. What reaches beyond the picture is dropped.
    void draw(const ImageView& picture, CanvasPoint at, int lit, int fading) const;

private:
    enum class State : std::uint8_t { Dark, Lit, Fading, BesideLit };

    StoredPicture paint(State state) const;
    void paintLed(const ImageView& picture, int index, State state) const;
    void paintHalo(const ImageView& picture, int index, int firstCell, int endCell) const;
    Colour colourOf(int index) const;
    bool shines() const;
    int cellStart(int index) const;
    CanvasRect cells(int first, int end) const;
    CanvasRect ledBox(int index) const;
    void copyCells(const ImageView& picture, CanvasPoint at, const StoredPicture& from, int first, int end) const;

    LedStripGeometry geometry_;
    LedLook look_;
    StoredPicture dark_;
    StoredPicture lit_;
    StoredPicture fading_;    // where LEDs take time to go out
    StoredPicture besideLit_; // each LED dark, with the light of the one before it
};

} // namespace veldran
