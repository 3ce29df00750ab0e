// Bubble chamber: a glass tank, three populations of bubbles that rise in it, and the shade along its edges. Drawn at
// twice the output's size and halved; places and shades come from bubble_model.
#include "instruments/windows/instruments.h"

#include "instruments/scenes/bubble_chamber_parameters.h"
#include "instruments/scenes/bubble_model.h"
#include "render/blend.h"
#include "render/windows/canvas.h"
#include "render/windows/frame_image.h"
#include "render/windows/reduced_copy.h"
#include "render/windows/shape_mask.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"

#include <map>
#include <utility>

namespace veldran::bubble_chamber {
namespace {

constexpr int kReduction = 50; // per cent

template <Setting kSetting>
constexpr int kBubbleControl = kControlOf<kBubbleChamberParameters, kBubbleChamberFirstControl, kSetting>;

struct BubbleChamberLook {
    Colour glass;
    Colour bubbles;
    Colour background; // outside of round corners
    int bevelDepth;
    bool useBevel;
    bool roundCorners;
};

// A sheet of ink in the form of a bubble.
struct BubbleSprite {
    GlobalBlock block;
    LockedImage image; // unlocked before the block goes
};

// What is the same for every frame.
struct BubbleScene {
    BubbleChamberLook look;
    int width; // of the tank, canvas pixels
    int height;
    TankGeometry geometry;
    std::vector<int> sideFactors;
    std::vector<int> endFactors;
    std::map<std::pair<int, int>, BubbleSprite> sprites; // by diameter and level, drawn when first wanted
};

BubbleParameters readParameters(HWND dialog) {
    BubbleParameters p{};
    p.seed = readParameter(dialog, kBubbleControl<Setting::MainBubbleSeed>);
    p.density = readParameter(dialog, kBubbleControl<Setting::MainBubbleDensity>);
    p.width = readParameter(dialog, kBubbleControl<Setting::MainBubbleWide>);
    p.height = readParameter(dialog, kBubbleControl<Setting::MainBubbleDeep>);
    p.frames = readParameter(dialog, kBubbleControl<Setting::MainBubbleFrames>);
    p.size = readParameter(dialog, kBubbleControl<Setting::MainBubbleSize>);
    p.drift = readParameter(dialog, kBubbleControl<Setting::MainBubbleDrift>);
    return p;
}

BubbleChamberLook readLook(HWND dialog) {
    BubbleChamberLook look{};
    look.glass = readColour(dialog, kBubbleControl<Setting::MainBubbleBlueColor>);
    look.bubbles = readColour(dialog, kBubbleControl<Setting::MainBubbleWhiteColor>);
    look.background = background(dialog, 0);
    look.bevelDepth = readParameter(dialog, kBubbleControl<Setting::MainBubbleBevelFactor>);
    look.useBevel = isChecked(dialog, kBubbleControl<Setting::MainBubbleUseBevel>);
    look.roundCorners = isChecked(dialog, kBubbleControl<Setting::MainBubbleUseRoundCorners>);
    return look;
}

BubbleSprite drawSprite(int diameter, int level) {
    ScopedCanvas canvas(diameter, diameter);
    if (!canvas)
        return {};
    fillRectangle(canvas.dc(), canvas.bounds(), makeColour(255, 255, 255));
    RECT box = canvas.bounds();
    for (const int grey : bubbleGreys(diameter, level)) {
        fillEllipse(canvas.dc(), box, makeColour(255 - grey, 255 - grey, 255 - grey));
        InflateRect(&box, -1, -1);
    }
    BubbleSprite sprite{canvas.finish(), {}};
    sprite.image = LockedImage(sprite.block.get());
    return sprite;
}

// False when the bubble's sprite cannot be drawn.
bool drawBubble(const ImageView& picture, BubbleScene& scene, const BubblePlace& bubble) {
    BubbleSprite& sprite = scene.sprites[{bubble.diameter, bubble.level}];
    if (!sprite.image)
        sprite = drawSprite(bubble.diameter, bubble.level);
    if (!sprite.image)
        return false;
    const int left = bubble.centre.x - bubble.diameter / 2;
    const int top = bubble.centre.y - bubble.diameter / 2;
    // What lies above the tank is drawn a tank's height below; rows beyond the borders are dropped each time.
    for (int row = wrappedRow(top, scene.height); row >= top; row -= scene.height)
        blendInk(picture, sprite.image.view(), left, row, scene.look.bubbles);
    return true;
}

void darken(std::uint8_t* bytes, int count, int factor) {
    for (int i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(divideBy255(bytes[i] * factor));
}

void drawBevel(const ImageView& picture, const BubbleScene& scene) {
    const int sides = static_cast<int>(scene.sideFactors.size());
    const int ends = static_cast<int>(scene.endFactors.size());
    for (int y = 0; y < picture.height; ++y)
        for (int k = 0; k < sides; ++k) {
            darken(picture.pixel(k, y), 3, scene.sideFactors[static_cast<std::size_t>(k)]);
            darken(picture.pixel(picture.width - 1 - k, y), 3, scene.sideFactors[static_cast<std::size_t>(k)]);
        }
    for (int k = 0; k < ends; ++k) {
        darken(picture.row(k), 3 * picture.width, scene.endFactors[static_cast<std::size_t>(k)]);
        darken(picture.row(picture.height - 1 - k), 3 * picture.width, scene.endFactors[static_cast<std::size_t>(k)]);
    }
}

// One frame with the bubbles at these places, drawn on `picture`.
GlobalBlock renderFrame(const ScopedCanvas& picture, BubbleScene& scene, const std::vector<BubblePlace>& bubbles) {
    if (!picture)
        return {};
    fillRectangle(picture.dc(), picture.bounds(), scene.look.glass);
    const ImageView pixels = picture.pixels();
    for (const BubblePlace& bubble : bubbles)
        if (!drawBubble(pixels, scene, bubble))
            return {};
    if (scene.look.useBevel)
        drawBevel(pixels, scene);
    if (scene.look.roundCorners)
        fillAroundRoundedRectangle(picture.dc(), picture.bounds(), scene.geometry.corner, scene.geometry.corner,
                                   scene.look.background);
    return reducedCopy(pixels, kReduction);
}

// The outline of the tank, in the size of the frames.
GlobalBlock renderOutline(const BubbleScene& scene) {
    const int width = scene.width / 2;
    const int height = scene.height / 2;
    const int corner = scene.geometry.corner / 2;
    return scene.look.roundCorners ? roundedRectangleMask(width, height, corner, corner, 2) : blankFrame(width, height);
}

class BubbleChamberSequence : public FrameSequence {
public:
    explicit BubbleChamberSequence(HWND dialog)
        : FrameSequence(dialog), set_(makeBubbleSet(readParameters(dialog))), motion_(set_),
          picture_(set_.width, set_.height) {
        scene_.look = readLook(dialog);
        scene_.width = set_.width;
        scene_.height = set_.height;
        scene_.geometry = tankGeometry(set_.width, set_.height);
        scene_.sideFactors = bevelFactors(scene_.geometry.sideBevel, scene_.look.bevelDepth);
        scene_.endFactors = bevelFactors(scene_.geometry.endBevel, scene_.look.bevelDepth);
    }

    int frames() const override { return set_.frames; }
    GlobalBlock render(int index) override { return renderFrame(picture_, scene_, motion_.places(index)); }
    GlobalBlock renderMask() override { return renderOutline(scene_); }
    GlobalBlock renderStill() override { return render(0); }

private:
    BubbleSet set_;
    BubbleMotion motion_;
    ScopedCanvas picture_; // the frame that is being drawn
    BubbleScene scene_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    return std::make_unique<BubbleChamberSequence>(dialog);
}

Colour background(HWND dialog, int) {
    const bool round = isChecked(dialog, kBubbleControl<Setting::MainBubbleUseRoundCorners>);
    return backgroundOr(dialog, readColour(dialog, round ? kBubbleControl<Setting::MainBubblePanelColor>
                                                         : kBubbleControl<Setting::MainBubbleBlueColor>));
}

} // namespace veldran::bubble_chamber
