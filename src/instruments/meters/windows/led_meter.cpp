// Meters made of LEDs: both digital VU meters, and the spectrum with a column for each band. Drawn at twice the
// output's size and halved where that is wanted. What stands still is drawn once; the LEDs come from led_strip, their
// places from led_meter_model.
#include "instruments/windows/instruments.h"

#include "base/windows/gdi.h"
#include "instruments/meters/led_meter_model.h"
#include "instruments/meters/led_meter_parameters.h"
#include "instruments/windows/canvas_places.h"
#include "instruments/windows/sound_frames.h"
#include "render/layers.h"
#include "render/windows/canvas.h"
#include "render/windows/reduced_copy.h"
#include "render/windows/shape_mask.h"
#include "render/windows/shapes.h"
#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace veldran::led_meter {
namespace {

constexpr Colour kWhite = makeColour(255, 255, 255);
constexpr double kFloorShade = 0.45;  // of the border's shadow: what lies deeper is darker
constexpr double kInkContrast = 0.65; // texts stand out from the panel by this much, towards white or black
constexpr int kTextHeight = 9;        // output pixels, for the narrowest LED
constexpr int kBreadthToText = 6;     // broader LEDs have larger texts

constexpr const char* kBandNames[] = {"31", "62", "125", "250", "500", "1k", "2k", "4k", "8k", "16k"};
static_assert(std::size(kBandNames) == kBands.size());

// What the representative frame shows: of each bank, and of the bands of the second and the first.
constexpr int kStillLevels[] = {236, 188};
constexpr int kStillBands[][10] = {{178, 228, 246, 214, 190, 204, 172, 146, 120, 84},
                                   {160, 214, 228, 222, 168, 186, 190, 128, 132, 70}};

struct LedMeterControls {
    int green;
    int yellow;
    int red;
    int panel;
    int frames;
    int leds;
    int ledWidth;
    int ledDepth;
    int padding;
    int etchSize;
    int retro;
    SoundControls sound;
    int matchTime;
    int scale;
    int labels;
    int etched;
    int showDark;
    int incandescent;
};

template <const auto& kRows, int kFirst, Setting kSettings>
constexpr LedMeterControls controlsOf() {
    using enum LedMeterSetting;
    return {kControlOf<kRows, kFirst, ledMeterSetting(kSettings, GreenColor)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, YellowColor)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, RedColor)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, BlackColor)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Frames)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, LEDs)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, LedWide)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, LedDeep)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Padsize)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Etchsize)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Retro)>,
            {kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Channels)>,
             kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Sound)>,
             kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Normalize)>},
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, MatchTime)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Scale)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Labels)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Etched)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, ShowDarkLED)>,
            kControlOf<kRows, kFirst, ledMeterSetting(kSettings, Incandescent)>};
}

// What one kind of meter differs by from the others.
struct LedMeterKind {
    LedMeterControls controls;
    LedDirection direction;
    SoundMeasure measure;

    int columns() const { return measure == SoundMeasure::Spectrum ? static_cast<int>(kBands.size()) : 1; }
};

constexpr LedMeterKind kVertical = {
    controlsOf<kVuDigitalVerticalParameters, kVuDigitalVerticalFirstControl, kVuDigitalVerticalSettings>(),
    LedDirection::Up, SoundMeasure::Levels};
constexpr LedMeterKind kHorizontal = {
    controlsOf<kVuDigitalHorizontalParameters, kVuDigitalHorizontalFirstControl, kVuDigitalHorizontalSettings>(),
    LedDirection::Right, SoundMeasure::Levels};
constexpr LedMeterKind kSpectrum = {controlsOf<kSpectrumParameters, kSpectrumFirstControl, kSpectrumSettings>(),
                                    LedDirection::Up, SoundMeasure::Spectrum};

// A setting without a control of its own, within the range that its editor allows.
int limitedSetting(Setting setting, int least, int most) {
    return static_cast<int>(std::clamp(pluginSettings().number(setting), static_cast<std::uint32_t>(least),
                                       static_cast<std::uint32_t>(most)));
}

Colour backgroundOf(HWND dialog, const LedMeterKind& kind) {
    return backgroundOr(dialog, readColour(dialog, kind.controls.panel));
}

std::vector<std::string> bankNames(SoundChannels channels) {
    const PlugInSettings& settings = pluginSettings();
    switch (channels) {
    case SoundChannels::Left:
        return {settings.text(Setting::LabelLeft)};
    case SoundChannels::Right:
        return {settings.text(Setting::LabelRight)};
    case SoundChannels::Mono:
        return {settings.text(Setting::LabelMono)};
    default:
        return {settings.text(Setting::LabelLeft), settings.text(Setting::LabelRight)};
    }
}

Font instrumentFont(int height) {
    const PlugInSettings& settings = pluginSettings();
    return pictureFont(settings.text(Setting::InstrumentFontName).c_str(),
                       settings.number(Setting::InstrumentFontBold) != 0, height, 0);
}

// The smallest box of whole output pixels that each of the texts fits into.
template <class Texts>
TextSize largestText(const Font& font, const Texts& texts, int unit) {
    const MemoryDc dc = required(MemoryDc(CreateCompatibleDC(nullptr)));
    const Selected selected(dc.get(), font.get());
    TextSize largest{0, 0};
    for (const std::string_view text : texts) {
        SIZE size{};
        GetTextExtentPoint32A(dc.get(), text.data(), static_cast<int>(text.size()), &size);
        largest.width = std::max(largest.width, static_cast<int>(size.cx));
        largest.height = std::max(largest.height, static_cast<int>(size.cy));
    }
    return {(largest.width + unit - 1) / unit * unit, (largest.height + unit - 1) / unit * unit};
}

// Text around a point.
void drawText(HDC dc, const std::string& text, CanvasPoint middle) {
    RECT box{middle.x, middle.y, middle.x, middle.y};
    DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), &box,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
}

CanvasPoint middleOf(const CanvasRect& box) {
    return {(box.left + box.right) / 2, (box.top + box.bottom) / 2};
}

// The border of something sunk: its upper and left side lie in the shadow.
void drawEtch(HDC dc, RECT box, int width, Colour shadow, Colour highlight) {
    for (int i = 0; i < width; ++i, InflateRect(&box, -1, -1)) {
        fillRectangle(dc, {box.left, box.top, box.right, box.top + 1}, shadow);
        fillRectangle(dc, {box.left, box.top, box.left + 1, box.bottom}, shadow);
        fillRectangle(dc, {box.left + 1, box.bottom - 1, box.right, box.bottom}, highlight);
        fillRectangle(dc, {box.right - 1, box.top + 1, box.right, box.bottom}, highlight);
    }
}

class LedMeterSequence : public FrameSequence {
public:
    LedMeterSequence(HWND dialog, const HostParams* host, const LedMeterKind& kind)
        : FrameSequence(dialog), kind_(kind), panel_(backgroundOf(dialog, kind)),
          etched_(isChecked(dialog, kind.controls.etched)), hasScale_(isChecked(dialog, kind.controls.scale)),
          hasLabels_(isChecked(dialog, kind.controls.labels)),
          sound_(
              readSoundFrames(dialog, kind.controls.sound, readParameter(dialog, kind.controls.frames), kind.measure)),
          names_(bankNames(sound_.channels)), shape_(readShape(dialog)), layout_(ledMeterLayout(shape_)),
          still_(layout_.width, layout_.height), picture_(layout_.width, layout_.height) {
        if (sound_.frames() > 0 && isChecked(dialog, kind.controls.matchTime))
            matchedDelay_ = sound_.matchedDelay(host);
        if (!still_)
            return;
        strip_.emplace(layout_.strip, readLook(dialog));
        drawStill();
    }

    int frames() const override { return sound_.frames(); }
    std::uint32_t delay(int index) const override { return matchedDelay_.value_or(FrameSequence::delay(index)); }
    GlobalBlock render(int index) override {
        return renderLevels([&](int bank, int column) { return level(bank, column, index); },
                            [&](int bank, int column) { return index > 0 ? level(bank, column, index - 1) : 0; });
    }
    GlobalBlock renderStill() override {
        const auto levels = [&](int bank, int column) {
            return kind_.measure == SoundMeasure::Spectrum ? kStillBands[bank][column] : kStillLevels[bank];
        };
        return renderLevels(levels, levels);
    }
    // Wells and writing are solid; the panel around them is not there.
    GlobalBlock renderMask() override {
        ScopedCanvas alpha(layout_.width, layout_.height);
        if (!alpha)
            return {};
        for (const CanvasRect& well : layout_.wells)
            fillRectangle(alpha.dc(), rectOf(well), kWhite);
        drawWriting(alpha.dc(), kWhite);
        return reducedOrUnchanged(alpha.finish(), percent());
    }

private:
    LedMeterShape readShape(HWND dialog) {
        const LedMeterControls& c = kind_.controls;
        LedMeterShape s{};
        const int unit = isChecked(dialog, kControlAntialias) ? 2 : 1;
        const auto pixels = [&](Setting setting) { return unit * limitedSetting(setting, 1, 256); };
        s.direction = kind_.direction;
        s.banks = soundDisplays(sound_.channels);
        s.columns = kind_.columns();
        s.leds = readParameter(dialog, c.leds);
        s.ledWidth = unit * readParameter(dialog, c.ledWidth);
        s.ledDepth = unit * readParameter(dialog, c.ledDepth);
        s.gapX = pixels(Setting::DigitalVUInterledHorizontal);
        s.gapY = pixels(Setting::DigitalVUInterledVertical);
        s.edgeX = pixels(Setting::DigitalVUEdgePadHorizontal);
        s.edgeY = pixels(Setting::DigitalVUEdgePadVertical);
        s.etch = etched_ ? unit * readParameter(dialog, c.etchSize) : 0;
        s.padding = unit * readParameter(dialog, c.padding);
        s.bankGap = pixels(Setting::AdvancedDigitalVUInterchannelHorizontal);
        s.unit = unit;
        const int breadth = s.direction == LedDirection::Up ? s.ledWidth : s.ledDepth;
        font_ = instrumentFont(unit * kTextHeight + breadth / kBreadthToText);
        if (hasScale_)
            s.scaleText = largestText(font_, std::array{"20", kScaleUnit}, unit);
        if (hasLabels_) {
            s.bankText = largestText(font_, names_, unit);
            if (s.columns > 1)
                s.columnText = largestText(font_, kBandNames, unit);
        }
        return s;
    }

    LedLook readLook(HWND dialog) const {
        const LedMeterControls& c = kind_.controls;
        LedLook look{};
        look.green = readColour(dialog, c.green);
        look.yellow = readColour(dialog, c.yellow);
        look.red = readColour(dialog, c.red);
        look.floor = etched_ ? scaleColour(shadow(), kFloorShade) : panel_;
        look.shape = static_cast<LedShape>(std::clamp(readChoicePosition(dialog, c.retro), 0, 2));
        look.yellowLevel = limitedSetting(Setting::DigitalVUYellowRange, 1, 254);
        look.redLevel = limitedSetting(Setting::DigitalVURedRange, 1, 254);
        look.darkPercent = limitedSetting(Setting::DigitalVUDarkFactor, 1, 99);
        look.showDark = isChecked(dialog, c.showDark);
        look.incandescent = isChecked(dialog, c.incandescent);
        return look;
    }

    int percent() const { return 100 / shape_.unit; }
    Colour shadow() const { return scaleColour(panel_, limitedSetting(Setting::DigitalVUEtchShadow, 1, 99) / 100.0); }
    Colour highlight() const {
        return scaleColour(panel_, limitedSetting(Setting::DigitalVUEtchHighlight, 100, 400) / 100.0);
    }
    Colour ink() const {
        const bool dark = redOf(panel_) + 2 * greenOf(panel_) + blueOf(panel_) < 2 * 255;
        return tonedColour(panel_, dark ? kInkContrast : -kInkContrast);
    }

    int level(int bank, int column, int frame) const {
        if (kind_.measure == SoundMeasure::Levels)
            return sound_.level(bank, frame);
        return shownLevel(sound_.sound->analysis.bands[static_cast<std::size_t>(column)], sound_.channels, bank,
                          static_cast<std::size_t>(frame));
    }

    void drawStill() const {
        fillRectangle(still_.dc(), still_.bounds(), panel_);
        for (const CanvasRect& well : layout_.wells) {
            RECT inside = rectOf(well);
            InflateRect(&inside, -shape_.etch, -shape_.etch);
            if (etched_)
                fillRectangle(still_.dc(), inside, scaleColour(shadow(), kFloorShade));
            drawEtch(still_.dc(), rectOf(well), shape_.etch, shadow(), highlight());
        }
        drawWriting(still_.dc(), ink());
    }

    void drawWriting(HDC dc, Colour colour) const {
        const Selected font(dc, font_.get());
        const TextStyle style(dc, colour);
        if (hasScale_)
            drawScale(dc, colour);
        if (!hasLabels_)
            return;
        for (int bank = 0; bank < shape_.banks; ++bank) {
            const auto at = static_cast<std::size_t>(bank);
            drawText(dc, names_[at], middleOf(layout_.labels[at]));
            for (int column = 0; shape_.columns > 1 && column < shape_.columns; ++column) {
                const int row = column % layout_.columnLabelRows;
                drawText(dc, kBandNames[column],
                         {columnOrigin(layout_, shape_, bank, column).x + layout_.columnPitch / 2,
                          layout_.columnLabelTop + (2 * row + 1) * shape_.columnText.height / 2});
            }
        }
    }

    void drawScale(HDC dc, Colour colour) const {
        const bool up = shape_.direction == LedDirection::Up;
        const CanvasRect& scale = layout_.scale;
        const int labelled = kLabelledTick * shape_.unit;
        const int space = labelled + kTextGap * shape_.unit;
        for (const ScaleMark& mark : scaleMarks(layout_.strip, up ? shape_.scaleText.height : shape_.scaleText.width)) {
            const int along = up ? scale.bottom - mark.along : scale.left + mark.along;
            const int tick = mark.tick * shape_.unit;
            const int first = up ? scale.left : scale.top;
            const int last = up ? scale.right : scale.bottom;
            drawTick(dc, along, first, first + tick, colour);
            if (shape_.banks > 1)
                drawTick(dc, along, last - tick, last, colour);
            const int middle = (first + space + last - (shape_.banks > 1 ? space : 0)) / 2;
            drawText(dc, mark.text, up ? CanvasPoint{middle, along} : CanvasPoint{along, middle});
        }
    }

    // A line across that fills one output pixel, so that it stays sharp.
    void drawTick(HDC dc, int along, int from, int to, Colour colour) const {
        const int first = along - along % shape_.unit;
        if (shape_.direction == LedDirection::Up)
            fillRectangle(dc, {from, first, to, first + shape_.unit}, colour);
        else
            fillRectangle(dc, {first, from, first + shape_.unit, to}, colour);
    }

    template <class LevelOf, class LevelBefore>
    GlobalBlock renderLevels(LevelOf levelOf, LevelBefore levelBefore) const {
        if (!still_ || !picture_)
            return {};
        const ImageView pixels = picture_.pixels();
        layImage(pixels, still_.pixels(), 0, 0);
        for (int bank = 0; bank < shape_.banks; ++bank)
            for (int column = 0; column < shape_.columns; ++column)
                strip_->draw(pixels, columnOrigin(layout_, shape_, bank, column),
                             litLeds(levelOf(bank, column), shape_.leds),
                             litLeds(levelBefore(bank, column), shape_.leds));
        return reducedCopy(pixels, percent());
    }

    const LedMeterKind& kind_;
    Colour panel_;
    bool etched_;
    bool hasScale_;
    bool hasLabels_;
    SoundFrames sound_;
    std::optional<std::uint32_t> matchedDelay_;
    Font font_;
    std::vector<std::string> names_; // of the banks
    LedMeterShape shape_;
    LedMeterLayout layout_;
    ScopedCanvas still_;   // everything but LEDs
    ScopedCanvas picture_; // the frame that is being drawn
    std::optional<LedStrip> strip_;
};

} // namespace

std::unique_ptr<FrameSequence> openVertical(HWND dialog, HostParams* host) {
    return std::make_unique<LedMeterSequence>(dialog, host, kVertical);
}

Colour verticalBackground(HWND dialog, int) {
    return backgroundOf(dialog, kVertical);
}

std::unique_ptr<FrameSequence> openHorizontal(HWND dialog, HostParams* host) {
    return std::make_unique<LedMeterSequence>(dialog, host, kHorizontal);
}

Colour horizontalBackground(HWND dialog, int) {
    return backgroundOf(dialog, kHorizontal);
}

std::unique_ptr<FrameSequence> openSpectrum(HWND dialog, HostParams* host) {
    return std::make_unique<LedMeterSequence>(dialog, host, kSpectrum);
}

Colour spectrumBackground(HWND dialog, int) {
    return backgroundOf(dialog, kSpectrum);
}

} // namespace veldran::led_meter
