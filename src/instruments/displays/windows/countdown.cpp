// Countdown: segment digits on a panel, with a bevelled frame around. Drawn in the pixels of the large digits and
// reduced at the end; clock, places and the frame's lines come from countdown_model.
#include "instruments/windows/instruments.h"

#include "instruments/displays/countdown_model.h"
#include "instruments/displays/countdown_parameters.h"
#include "instruments/shape_runs.h"
#include "instruments/windows/canvas_places.h"
#include "render/layers.h"
#include "render/resample.h"
#include "render/windows/artwork.h"
#include "render/windows/canvas.h"
#include "render/windows/reduced_copy.h"
#include "render/windows/shape_mask.h"
#include "render/windows/shapes.h"
#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"

#include <map>
#include <utility>

namespace veldran::countdown {
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
    std::map<std::pair<GlyphStrip, int>, std::vector<PixelRun>> ink; // of glyphs by their left column, once wanted
    Artwork panel{GlobalBlock()};                                    // with the bezel, without digits
    Artwork picture{GlobalBlock()};                                  // the frame that is being drawn
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

Artwork drawPanel(const CountdownScene& scene) {
    ScopedCanvas panel(scene.geometry.width, scene.geometry.height);
    if (!panel)
        return Artwork(GlobalBlock());
    fillRectangle(panel.dc(), panel.bounds(), scene.look.panel);
    if (scene.parameters.useBezel)
        drawBezel(panel.dc(), scene);
    return Artwork(panel.finish());
}

void drawGlyph(const ImageView& picture, CountdownScene& scene, const CountdownGlyph& glyph) {
    const ConstImageView& strip = glyph.strip == GlyphStrip::Large ? scene.large : scene.small;
    const auto& [left, top, right, bottom] = glyph.source;
    const ConstImageView cell = cropped(strip, left, top, right, bottom);
    std::vector<PixelRun>& ink = scene.ink[{glyph.strip, left}];
    if (ink.empty())
        ink = inkRuns(cell);
    blendInkRuns(picture, cell, ink, glyph.target, scene.look.digits);
}

// One frame that shows this time.
GlobalBlock renderFrame(CountdownScene& scene, const CountdownTime& time) {
    if (!scene.panel || !scene.picture)
        return {};
    const ImageView& picture = scene.picture.view();
    layImage(picture, scene.panel.view(), 0, 0);
    for (const CountdownGlyph& glyph : countdownGlyphs(scene.geometry, time, scene.parameters.tenths))
        drawGlyph(picture, scene, glyph);
    return reducedCopy(picture, scene.geometry.percent);
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
        scene_.panel = drawPanel(scene_);
        scene_.picture = Artwork(createImage(scene_.geometry.width, scene_.geometry.height, 24));
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

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams* host) {
    Artwork large(kLargeResource);
    Artwork small(kSmallResource);
    return large && small ? std::make_unique<CountdownSequence>(dialog, host, std::move(large), std::move(small))
                          : nullptr;
}

Colour background(HWND dialog, int) {
    return isChecked(dialog, kControlAlpha) ? backgroundOr(dialog, 0) : kNoColour;
}

} // namespace veldran::countdown
