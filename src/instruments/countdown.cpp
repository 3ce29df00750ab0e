// Countdown: segment digits on a panel, with a bevelled frame around. Drawn in the pixels of the large digits and
// reduced at the end; clock, places and the frame's lines come from countdown_model.
#include "instruments/countdown.h"

#include "instruments/canvas_places.h"
#include "instruments/countdown_model.h"
#include "instruments/countdown_parameters.h"
#include "render/artwork.h"
#include "render/blend.h"
#include "render/canvas.h"
#include "render/resample.h"
#include "render/shape_mask.h"
#include "render/shapes.h"
#include "settings/output_options.h"
#include "settings/parameter_reader.h"

namespace veldran {
namespace {

constexpr int kLargeResource = 7208;
constexpr int kSmallResource = 7209;

template <Setting kSetting>
constexpr int kCountdownControl = kControlOf<kCountdownParameters, kCountdownFirstControl, kSetting>;
constexpr int kBezelColourControl =
    controlOf(kCountdownParameters, kCountdownFirstControl, ParameterKind::SessionColour);

struct CountdownLook {
    Colour digits;
    Colour panel;
    Colour bezel;
};

// What is the same for every frame.
struct CountdownScene {
    CountdownParameters parameters;
    CountdownLook look;
    CountdownGeometry geometry;
    ConstImageView large;
    ConstImageView small;
    GlobalBlock panel; // with the bezel, without digits
};

CountdownParameters readParameters(HWND dialog) {
    CountdownParameters p{};
    p.hours = readParameter(dialog, kCountdownControl<Setting::MainCountdownHours>);
    p.minutes = readParameter(dialog, kCountdownControl<Setting::MainCountdownMinutes>);
    p.seconds = readParameter(dialog, kCountdownControl<Setting::MainCountdownSeconds>);
    p.tenths = isChecked(dialog, kCountdownControl<Setting::MainCountdownUseHund>);
    p.size = readParameter(dialog, kCountdownControl<Setting::MainCountdownSize>);
    p.usePadding = isChecked(dialog, kCountdownControl<Setting::MainCountdownUsePadding>);
    p.padding = readParameter(dialog, kCountdownControl<Setting::MainCountdownPadding>);
    p.useBezel = isChecked(dialog, kCountdownControl<Setting::MainCountdownUseBezel>);
    p.bezelSize = readParameter(dialog, kCountdownControl<Setting::MainCountdownBezelSize>);
    p.antialias = isChecked(dialog, kControlAntialias);
    return p;
}

CountdownLook readLook(HWND dialog) {
    CountdownLook look{};
    look.digits = readColour(dialog, kCountdownControl<Setting::MainCountdownRedColor>);
    look.panel = readColour(dialog, kCountdownControl<Setting::MainCountdownBlackColor>);
    look.bezel = readColour(dialog, kBezelColourControl);
    return look;
}

void drawBevel(HDC dc, const BevelRing& ring, int width) {
    const auto& [left, top, right, bottom] = ring.corners;
    const POINT topLeft[] = {{left, bottom}, {left, top}, {right, top}};
    const POINT bottomRight[] = {{right, top}, {right, bottom}, {left, bottom}};
    drawPolyline(dc, topLeft, width, ring.topLeft);
    drawPolyline(dc, bottomRight, width, ring.bottomRight);
}

void drawBezel(HDC dc, const CountdownScene& scene) {
    const int width = scene.geometry.bezelLine;
    const CountdownBezel bezel = countdownBezel(scene.geometry, scene.parameters.bezelSize, scene.look.bezel);
    for (const OutlinedRect& line : bezel.outer)
        drawRectangle(dc, rectOf(line.rect), width, line.colour);
    for (const BevelRing& ring : bezel.rings)
        drawBevel(dc, ring, width);
    drawRectangle(dc, rectOf(bezel.inner.rect), width, bezel.inner.colour);
}

GlobalBlock renderPanel(const CountdownScene& scene) {
    ScopedCanvas picture(scene.geometry.width, scene.geometry.height);
    if (!picture)
        return {};
    fillRectangle(picture.dc(), picture.bounds(), scene.look.panel);
    if (scene.parameters.useBezel)
        drawBezel(picture.dc(), scene);
    return picture.finish();
}

// One frame that shows this time.
GlobalBlock renderFrame(const CountdownScene& scene, const CountdownTime& time) {
    GlobalBlock frame = copyImage(scene.panel.get());
    {
        const LockedImage picture(frame.get());
        if (!picture)
            return {};
        for (const CountdownGlyph& glyph : countdownGlyphs(scene.geometry, time, scene.parameters.tenths)) {
            const ConstImageView& strip = glyph.strip == GlyphStrip::Large ? scene.large : scene.small;
            const auto& [left, top, right, bottom] = glyph.source;
            blendInk(picture.view(), cropped(strip, left, top, right, bottom), glyph.target.x, glyph.target.y,
                     scene.look.digits);
        }
    }
    return reducedOrUnchanged(std::move(frame), scene.geometry.percent);
}

class CountdownSequence : public FrameSequence {
public:
    CountdownSequence(HWND dialog, const HostParams* host, Artwork large, Artwork small)
        : FrameSequence(dialog), large_(std::move(large)), small_(std::move(small)) {
        scene_.parameters = readParameters(dialog);
        scene_.look = readLook(dialog);
        scene_.geometry = countdownGeometry(scene_.parameters);
        scene_.large = large_.view();
        scene_.small = small_.view();
        scene_.panel = renderPanel(scene_);
        delay_ = countdownDelay(scene_.parameters.tenths, delayUnitOf(host));
    }

    int frames() const override { return countdownSteps(scene_.parameters) + 1; }
    std::uint32_t delay(int) const override { return delay_; }
    GlobalBlock render(int index) override { return renderFrame(scene_, countdownTime(scene_.parameters, index)); }
    GlobalBlock renderMask() override {
        const CountdownGeometry& geometry = scene_.geometry;
        return blankFrame(scaledLength(geometry.width, geometry.percent),
                          scaledLength(geometry.height, geometry.percent));
    }
    GlobalBlock renderStill() override {
        CountdownTime time = countdownTime(scene_.parameters, 0);
        time.tenths = kCountdownStillTenths;
        return renderFrame(scene_, time);
    }
    int progressTotal() const override { return countdownSteps(scene_.parameters); }
    const void* artwork() const override { return &scene_.large; }

private:
    Artwork large_;
    Artwork small_;
    CountdownScene scene_;
    std::uint32_t delay_ = 0;
};

} // namespace

std::unique_ptr<FrameSequence> openCountdown(HWND dialog, HostParams* host) {
    Artwork large(kLargeResource);
    Artwork small(kSmallResource);
    return large && small ? std::make_unique<CountdownSequence>(dialog, host, std::move(large), std::move(small))
                          : nullptr;
}

Colour countdownBackground(HWND dialog, int) {
    return isChecked(dialog, kControlAlpha) ? backgroundOr(dialog, 0) : kNoColour;
}

} // namespace veldran
