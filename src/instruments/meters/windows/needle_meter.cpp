// Analog VU meters: needles that follow the levels of a sound, one meter a channel. Everything is drawn in the pixels
// of the artwork and reduced at the end; the numbers come from needle_meter_model.
#include "instruments/windows/instruments.h"

#include "instruments/meters/needle_meter_model.h"
#include "instruments/meters/needle_meter_parameters.h"
#include "instruments/windows/canvas_places.h"
#include "instruments/windows/sound_frames.h"
#include "render/blend.h"
#include "render/layers.h"
#include "render/windows/artwork.h"
#include "render/windows/canvas.h"
#include "render/windows/reduced_copy.h"
#include "render/windows/shape_mask.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"

#include <algorithm>
#include <optional>

namespace veldran::needle_meter {
namespace {

constexpr Colour kNeedleLit = makeColour(92, 84, 78);
constexpr Colour kNeedleDark = makeColour(14, 12, 11);
constexpr Colour kShadowStrength = makeColour(100, 100, 100); // of 255
constexpr CanvasPoint kShadowOffset = {5, 6};                 // away from the light

struct NeedleMeterControls {
    int panel;
    int size;
    int frames;
    int padding;
    SoundControls sound;
    int matchTime;
    int usePadding;
};

template <const auto& kRows, int kFirst, Setting kSettings>
constexpr NeedleMeterControls controlsOf() {
    using enum NeedleMeterSetting;
    return {kControlOf<kRows, kFirst, needleMeterSetting(kSettings, BlackColor)>,
            kControlOf<kRows, kFirst, needleMeterSetting(kSettings, Size)>,
            kControlOf<kRows, kFirst, needleMeterSetting(kSettings, Frames)>,
            kControlOf<kRows, kFirst, needleMeterSetting(kSettings, Padding)>,
            {kControlOf<kRows, kFirst, needleMeterSetting(kSettings, Channels)>,
             kControlOf<kRows, kFirst, needleMeterSetting(kSettings, Sound)>,
             kControlOf<kRows, kFirst, needleMeterSetting(kSettings, Normalize)>},
            kControlOf<kRows, kFirst, needleMeterSetting(kSettings, MatchTime)>,
            kControlOf<kRows, kFirst, needleMeterSetting(kSettings, UsePadding)>};
}

// What one kind of meter differs by from the other.
struct NeedleMeterKind {
    NeedleMeterControls controls;
    int face;   // resource: the meter without a needle
    int lit;    // resource: its upper rows with the lamp lit
    int window; // resource: where the needle is seen
    NeedlePlace needle;
    int corner; // the outline is a rectangle with corners of circles of this diameter
};

constexpr NeedleMeterKind kRectangular = {
    controlsOf<kVuAnalogRectangularParameters, kVuAnalogRectangularFirstControl, kVuAnalogRectangularSettings>(),
    7202,
    7203,
    7204,
    {{256, 418}, 50, 291, 40},
    70};

constexpr NeedleMeterKind kRound = {
    controlsOf<kVuAnalogRoundParameters, kVuAnalogRoundFirstControl, kVuAnalogRoundSettings>(),
    7205,
    7206,
    7207,
    {{288, 424}, 35, 263, 44},
    576};

struct NeedleMeterArtwork {
    Artwork face;
    Artwork lit;
    Artwork window;

    explicit NeedleMeterArtwork(const NeedleMeterKind& kind) : face(kind.face), lit(kind.lit), window(kind.window) {}
    explicit operator bool() const { return face && lit && window; }
};

Colour backgroundOf(HWND dialog, const NeedleMeterKind& kind) {
    return backgroundOr(dialog, readColour(dialog, kind.controls.panel));
}

class NeedleMeterSequence : public FrameSequence {
public:
    NeedleMeterSequence(HWND dialog, const HostParams* host, const NeedleMeterKind& kind, NeedleMeterArtwork artwork)
        : FrameSequence(dialog), kind_(kind), artwork_(std::move(artwork)), background_(backgroundOf(dialog, kind)),
          sound_(readSoundFrames(dialog, kind.controls.sound, readParameter(dialog, kind.controls.frames),
                                 SoundMeasure::Levels)),
          dark_(artwork_.face.view().width, artwork_.face.view().height),
          lit_(artwork_.face.view().width, artwork_.face.view().height),
          shadow_(artwork_.window.view().width, artwork_.window.view().height) {
        const ConstImageView face = artwork_.face.view();
        const int padding = readParameter(dialog, kind.controls.padding);
        geometry_ = artworkGeometry(face.width, face.height, readParameter(dialog, kind.controls.size),
                                    isChecked(dialog, kind.controls.usePadding) ? padding : 0);
        step_ = face.width + geometry_.unit * padding;
        geometry_.width += (displays() - 1) * step_;
        picture_.emplace(geometry_.width, geometry_.height);
        if (sound_.frames() > 0 && isChecked(dialog, kind.controls.matchTime))
            matchedDelay_ = sound_.matchedDelay(host);
        if (!dark_ || !lit_)
            return;
        layImage(dark_.pixels(), face, 0, 0);
        layImage(lit_.pixels(), face, 0, 0);
        layImage(lit_.pixels(), artwork_.lit.view(), 0, 0);
        for (const ScopedCanvas* still : {&dark_, &lit_})
            cutOutline(*still, {0, 0}, background_);
    }

    int frames() const override { return sound_.frames(); }
    std::uint32_t delay(int index) const override { return matchedDelay_.value_or(FrameSequence::delay(index)); }
    GlobalBlock render(int index) override {
        return renderLevels([&](int display) { return sound_.level(display, index); });
    }
    GlobalBlock renderStill() override {
        return renderLevels([](int display) { return kNeedleStill[display]; });
    }
    GlobalBlock renderMask() override {
        ScopedCanvas alpha(geometry_.width, geometry_.height);
        if (!alpha)
            return {};
        for (int display = 0; display < displays(); ++display) {
            const CanvasPoint at = originOf(display);
            const ConstImageView face = artwork_.face.view();
            fillRectangle(alpha.dc(), rectOf(rectAt(at, face.width, face.height)), makeColour(255, 255, 255));
            cutOutline(alpha, at, 0);
        }
        return reducedOrUnchanged(alpha.finish(), geometry_.percent);
    }
    const void* artwork() const override { return &artwork_.face.view(); }

private:
    int displays() const { return soundDisplays(sound_.channels); }

    CanvasPoint originOf(int display) const { return {geometry_.pad + display * step_, geometry_.pad}; }

    // Fills what lies around the outline of a meter at `at`.
    void cutOutline(const ScopedCanvas& canvas, CanvasPoint at, Colour colour) const {
        const ConstImageView face = artwork_.face.view();
        fillAroundRoundedRectangle(canvas.dc(), rectOf(rectAt(at, face.width, face.height)), kind_.corner, kind_.corner,
                                   colour);
    }

    template <class LevelOf>
    GlobalBlock renderLevels(LevelOf levelOf) const {
        const ScopedCanvas& picture = *picture_;
        if (!dark_ || !lit_ || !picture || !shadow_)
            return {};
        fillRectangle(picture.dc(), picture.bounds(), background_);
        for (int display = 0; display < displays(); ++display)
            drawMeter(picture, originOf(display), levelOf(display));
        return reducedCopy(picture.pixels(), geometry_.percent);
    }

    void drawMeter(const ScopedCanvas& picture, CanvasPoint at, int level) const {
        const ConstImageView still = (level < kLampLevel ? dark_ : lit_).pixels();
        layImage(picture.pixels(), still, at.x, at.y);

        fillRectangle(shadow_.dc(), shadow_.bounds(), 0);
        drawNeedle(shadow_.dc(), level, kShadowOffset, kShadowStrength, kShadowStrength);
        blendColourThroughMask(picture.pixels(), shadow_.pixels(), at.x, at.y, 0);

        drawNeedle(picture.dc(), level, at, kNeedleLit, kNeedleDark);
        keepInWindow(cropped(picture.pixels(), at.x, at.y, at.x + still.width, at.y + still.height), still,
                     artwork_.window.view());
    }

    void drawNeedle(HDC dc, int level, CanvasPoint offset, Colour lit, Colour dark) const {
        const NeedleShape needle = needleShape(kind_.needle, level, geometry_.unit, offset);
        for (const auto& [corners, colour] : {std::pair{&needle.lit, lit}, std::pair{&needle.dark, dark}}) {
            std::array<POINT, 4> points{};
            std::ranges::transform(*corners, points.begin(), pointOf);
            fillPolygon(dc, points, colour);
        }
    }

    const NeedleMeterKind& kind_;
    NeedleMeterArtwork artwork_;
    Colour background_;
    SoundFrames sound_;
    std::optional<std::uint32_t> matchedDelay_;
    ArtworkGeometry geometry_{};
    int step_ = 0;      // from one meter to the next
    ScopedCanvas dark_; // a meter without its needle, cut out
    ScopedCanvas lit_;  // the same with its lamp lit
    // What a frame is drawn on: the picture, and the needle's shadow, as large as the window.
    std::optional<ScopedCanvas> picture_;
    ScopedCanvas shadow_;
};

std::unique_ptr<FrameSequence> openMeter(HWND dialog, const HostParams* host, const NeedleMeterKind& kind) {
    NeedleMeterArtwork artwork(kind);
    return artwork ? std::make_unique<NeedleMeterSequence>(dialog, host, kind, std::move(artwork)) : nullptr;
}

} // namespace

std::unique_ptr<FrameSequence> openRectangular(HWND dialog, HostParams* host) {
    return openMeter(dialog, host, kRectangular);
}

Colour rectangularBackground(HWND dialog, int) {
    return backgroundOf(dialog, kRectangular);
}

std::unique_ptr<FrameSequence> openRound(HWND dialog, HostParams* host) {
    return openMeter(dialog, host, kRound);
}

Colour roundBackground(HWND dialog, int) {
    return backgroundOf(dialog, kRound);
}

} // namespace veldran::needle_meter
