// LEDs and tuning tubes against the levels they stand for: how many are lit, in which colour, what the shadow moves;
// light beside what is lit; scales and the places of everything on a meter.
#include "instruments/meters/eye_tube.h"
#include "instruments/meters/led_meter_model.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace veldran {
namespace {

constexpr Colour kGreen = 0x00C000;
constexpr Colour kYellow = 0x00C0C0;
constexpr Colour kRed = 0x0000C0;
constexpr LedLook kLook = {kGreen, kYellow, kRed, 0x101010, LedShape::Plain, 160, 220, 50, true, false};

struct DrawnLeds {
    LedStripGeometry geometry;
    StoredPicture picture;

    DrawnLeds(const LedStripGeometry& g, const LedLook& look, int lit, int fading)
        : geometry(g), picture(g.width(), g.height()) {
        LedStrip(g, look).draw(picture.view, {0, 0}, lit, fading);
    }

    // In the middle across.
    Colour at(int along) const {
        const bool up = geometry.direction == LedDirection::Up;
        const ImageView& view = picture.view;
        const std::uint8_t* pixel =
            up ? view.pixel(geometry.across / 2, geometry.along() - 1 - along) : view.pixel(along, geometry.across / 2);
        return makeColour(pixel[2], pixel[1], pixel[0]);
    }
    Colour middleOf(int led) const {
        return at(geometry.edge + led * (geometry.ledAlong + geometry.gap) + geometry.ledAlong / 2);
    }
};

constexpr LedStripGeometry kUp = {LedDirection::Up, 44, 6, 14, 2, 4, 26, 2};
constexpr LedStripGeometry kRight = {LedDirection::Right, 20, 8, 18, 4, 6, 26, 2};

TEST(Leds, LitPartIsTheLevelAndItsTopTellsTheRange) {
    for (const int leds : {8, 44, 128})
        for (int level = 0; level < 256; ++level)
            EXPECT_LE(std::abs(litLeds(level, leds) - level * leds / 255.0), 0.5) << leds << ' ' << level;
    for (const LedStripGeometry& geometry : {kUp, kRight}) {
        const DrawnLeds full(geometry, kLook, geometry.leds, 0);
        for (int level = 1; level < 256; ++level) {
            const int lit = litLeds(level, geometry.leds);
            if (lit == litLeds(level - 1, geometry.leds))
                continue;
            const Colour top = full.middleOf(lit - 1);
            EXPECT_EQ(redOf(top) > 150, level >= 160) << level;
            EXPECT_EQ(greenOf(top) > 150, level < 220) << level;
        }
    }
}

TEST(Leds, EveryStateLooksDifferent) {
    LedLook look = kLook;
    look.incandescent = true;
    for (const LedShape shape : {LedShape::Plain, LedShape::Round, LedShape::Tube})
        for (const bool showDark : {true, false})
            for (const LedStripGeometry& geometry : {kUp, kRight}) {
                look.shape = shape;
                look.showDark = showDark;
                const DrawnLeds drawn(geometry, look, 5, 8);
                const int lit = greenOf(drawn.middleOf(4)), fading = greenOf(drawn.middleOf(7));
                const int dark = greenOf(drawn.middleOf(8));
                EXPECT_TRUE(lit > 190 && lit > fading && fading > dark) << lit << ' ' << fading;
                EXPECT_NEAR(dark, showDark ? 96 : 16, 4);
                // Light falls on the channel between lit ones alone.
                const int gap = geometry.edge + geometry.ledAlong + geometry.gap / 2;
                EXPECT_GT(greenOf(drawn.at(gap)), 40);
                EXPECT_EQ(drawn.at(gap + 10 * (geometry.ledAlong + geometry.gap)), 0x101010u);
            }
    LedLook tube = kLook;
    tube.shape = LedShape::Tube; // shines on the next one
    const DrawnLeds drawn(kUp, tube, 5, 8);
    EXPECT_NE(drawn.at(kUp.edge + 5 * 8), drawn.at(kUp.edge + 6 * 8));
    EXPECT_EQ(drawn.middleOf(7), drawn.middleOf(8)); // goes out at once
}

TEST(Leds, ScaleIsDecibelsOfALinearLevel) {
    for (const LedStripGeometry& geometry : {kUp, kRight})
        for (const int text : {8, 22, 60}) {
            const std::vector<ScaleMark> marks = scaleMarks(geometry, text);
            for (const ScaleMark& mark : marks) {
                const double share = (mark.along - geometry.edge) / double(geometry.along() - 2 * geometry.edge);
                if (mark.tick > 0 && !mark.text.empty()) {
                    EXPECT_NEAR(share, std::pow(10, -std::stoi(mark.text) / 20.0), 0.01);
                }
                for (const ScaleMark& other : marks) {
                    const int least = mark.text.empty() || other.text.empty() ? 8 : text + 1;
                    EXPECT_TRUE(&other == &mark || std::abs(other.along - mark.along) >= least);
                }
            }
            EXPECT_EQ(marks.front().text, "0");
            EXPECT_GE(marks.size(), 4u);
        }
}

bool meet(const CanvasRect& a, const CanvasRect& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// Every combination of kinds, scales, labels and borders, with texts wider and narrower than the wells.
TEST(Leds, NothingOnAMeterMeets) {
    for (int bits = 0; bits < 128; ++bits) {
        SCOPED_TRACE(bits);
        const auto flag = [bits](int bit) { return (bits >> bit & 1) != 0; };
        const bool up = flag(0), narrow = flag(3), low = flag(4), labels = flag(6);
        const int columns = up && flag(1) ? 10 : 1;
        const LedDirection direction = up ? LedDirection::Up : LedDirection::Right;
        const int banks = flag(2) ? 2 : 1, width = narrow ? 2 : 40, depth = low ? 2 : 60;
        const int etch = narrow ? 6 : 0, padding = low ? 0 : 8;
        LedMeterShape s{direction, banks, columns, 20, width, depth, 2, 2, 4, 4, etch, padding, 12, 2, {}, {}, {}};
        if (flag(5))
            s.scaleText = {22, 20};
        if (labels) {
            s.bankText = {66, 20};
            s.columnText = columns > 1 ? TextSize{30, 20} : TextSize{};
        }
        const LedMeterLayout layout = ledMeterLayout(s);
        std::vector<CanvasRect> boxes = layout.wells;
        if (flag(5))
            boxes.push_back(layout.scale);
        if (labels)
            boxes.insert(boxes.end(), layout.labels.begin(), layout.labels.end());
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            EXPECT_TRUE(boxes[i].left >= s.padding && boxes[i].top >= s.padding &&
                        boxes[i].right <= layout.width - s.padding && boxes[i].bottom <= layout.height - s.padding);
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(meet(boxes[i], boxes[j])) << i << ' ' << j;
        }
        for (int bank = 0; bank < s.banks; ++bank) {
            const CanvasRect& well = layout.wells[static_cast<std::size_t>(bank)];
            const CanvasPoint last = columnOrigin(layout, s, bank, s.columns - 1);
            EXPECT_EQ(last.x + layout.strip.width() + layout.firstColumn, well.right - s.etch);
            EXPECT_EQ(last.y + layout.strip.height(), well.bottom - s.etch);
            EXPECT_EQ((well.left | well.top | well.right | well.bottom | last.x) % 2, 0); // sharp once halved
        }
    }
}

TEST(EyeTube, ShadowAloneMovesAndLightOverlaps) {
    constexpr int kDiameter = 240;
    const EyeTube tube(kDiameter, {0x40C040, 0x4C4C4C, Edges::Smooth});
    const StoredPicture silent(kDiameter, kDiameter), full(kDiameter, kDiameter);
    for (const auto& [picture, level] : {std::pair{&silent, 0}, {&full, 255}}) {
        tube.drawLit(picture->view, {0, 0});
        tube.drawShadow(picture->view, {0, 0}, level);
    }
    for (int y = 0; y < kDiameter; ++y)
        for (int x = 0; x < kDiameter; ++x) {
            const std::uint8_t* pixel = silent.view.pixel(x, y);
            const bool onCone = y >= kDiameter / 2 && std::hypot(x - 119.5, y - 119.5) < 0.85 * kDiameter / 2;
            EXPECT_TRUE(onCone || std::equal(pixel, pixel + 3, full.view.pixel(x, y))) << x << ' ' << y;
        }
    // On the cone's middle 3, 30 and 14 degrees from its lowest place.
    const auto green = [&](int x, int y) { return full.view.pixel(x, y)[1]; };
    EXPECT_GT(green(123, 179), green(150, 171) + 8);
    EXPECT_LT(green(134, 178), green(123, 179) - 8); // the sliver is narrow
}

} // namespace
} // namespace veldran
