// Data pad: a page of text in a case whose lamps, bars and marks follow the frame and its topmost line. Everything is
// drawn in the pixels of the case and reduced at the end; the numbers come from data_pad_model. What is alike in all
// frames (page, shadow, case, the type in its colours) is drawn once.
#include "instruments/windows/instruments.h"

#include "base/windows/file.h"
#include "base/windows/gdi.h"
#include "base/windows/wait_cursor.h"
#include "instruments/displays/data_pad_model.h"
#include "instruments/windows/canvas_places.h"
#include "render/blend.h"
#include "render/layers.h"
#include "render/light/glow.h"
#include "render/windows/artwork.h"
#include "render/windows/canvas.h"
#include "render/windows/reduced_copy.h"
#include "render/windows/shape_mask.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

#include <algorithm>
#include <memory>

namespace veldran::data_pad {
namespace {

constexpr int kTypeResource = 7217;
constexpr int kCaseResource = 7215;
constexpr int kShadowResource = 7216;
constexpr int kSimpleCaseResource = 7218;
constexpr int kSimpleShadowResource = 7219;

constexpr std::uint8_t kOutsideIndex = 255; // of the case's pixels
constexpr Colour kWhite = 0xFFFFFF;

// How the shadow's edge is softened.
constexpr int kShadowGlow = 400; // per cent
constexpr int kShadowReach = 60; // pixels of the case

struct DataPadParameters {
    Colour page;
    Colour casing;
    Colour text;
    DataPadColours lights;
    int size;
    int shadowDensity; // per cent
    int shadowOffset;  // pixels of the case
    bool shadow;
    bool status;
    bool simpleCase;
    TextPage lines;
};

struct DataPadArtwork {
    Artwork type;   // ink
    Artwork casing; // indices
    Artwork shadow; // 0 is material

    explicit DataPadArtwork(bool simpleCase)
        : type(kTypeResource), casing(simpleCase ? kSimpleCaseResource : kCaseResource),
          shadow(simpleCase ? kSimpleShadowResource : kShadowResource) {}
    explicit operator bool() const { return type && casing && shadow; }
};

// What is the same for every frame.
struct DataPadScene {
    DataPadParameters parameters;
    ArtworkGeometry geometry;
    ConstImageView casing;
    ConstImageView shadow;
    ShadowFactors shadowFactors;
    Artwork type{GlobalBlock()};   // in the text's colour on the page's
    Artwork ground{GlobalBlock()}; // the page and the case on it, without text and lights
};

DataPadParameters readParameters(HWND dialog) {
    DataPadParameters p{};
    p.page = readColour(dialog, kDataPadControl<Setting::MainDatapadBackColor>);
    p.casing = readColour(dialog, kDataPadControl<Setting::MainDatapadBezelColor>);
    p.text = readColour(dialog, kDataPadControl<Setting::MainDatapadTextColor>);
    p.lights = dataPadColours(readColour(dialog, kDataPadControl<Setting::MainDatapadCounterColor>),
                              readColour(dialog, kDataPadControl<Setting::MainDatapadStatusColor>),
                              pluginSettings().number(Setting::AdvancedDatapadDarknessFactor));
    p.size = readParameter(dialog, kDataPadControl<Setting::MainDatapadSize>);
    p.shadowDensity = readParameter(dialog, kDataPadControl<Setting::MainDatapadShadowDensity>);
    p.shadowOffset = readParameter(dialog, kDataPadControl<Setting::MainDatapadShadowOffset>);
    p.shadow = isChecked(dialog, kDataPadControl<Setting::MainDatapadUseShadow>);
    p.status = isChecked(dialog, kDataPadControl<Setting::MainDatapadUseStatus>);
    p.simpleCase = isChecked(dialog, kDataPadControl<Setting::MainDatapadSimple>);
    return p;
}

// Nothing when the file cannot be read.
std::optional<TextPage> readPage(HWND dialog) {
    const std::optional<std::string> text =
        readWholeFile(readText(dialog, kDataPadControl<Setting::MainDatapadTextFile>));
    if (!text)
        return std::nullopt;
    return readTextPage({reinterpret_cast<const std::uint8_t*>(text->data()), text->size()});
}

// Material becomes white, its smoothed edge included: glow lifts what is darker than its surroundings, and half-tones
// on the edge would stay behind as a thin light line.
void takeMaterial(const ImageView& mask) {
    for (int y = 0; y < mask.height; ++y)
        std::transform(mask.row(y), mask.row(y) + 3 * mask.width, mask.row(y),
                       [](std::uint8_t byte) { return static_cast<std::uint8_t>(byte < 255 ? 255 : 0); });
}

// How many pixels at the beginning of each row of the upper half are no material: the corner that faces the light.
std::vector<int> litCorner(const ConstImageView& mask) {
    std::vector<int> lit;
    for (int y = 0; y < mask.height / 2; ++y) {
        int x = 0;
        while (x < mask.width / 2 && *mask.pixel(x, y) == 255)
            ++x;
        lit.push_back(x);
    }
    return lit;
}

// Material spreads its shade over its edges: light that spread over the material would leave nothing of it where it is
// narrow. The light comes from above left, so there is no shade beyond the edge that faces it.
void softenShadow(const ImageView& mask) {
    const std::vector<int> lit = litCorner(mask);
    takeMaterial(mask);
    glowImage(mask, kShadowGlow, kShadowReach);
    invertImage(mask);
    for (std::size_t y = 0; y < lit.size(); ++y)
        std::fill_n(mask.row(static_cast<int>(y)), 3 * lit[y], std::uint8_t{255});
}

ShadowFactors factorsOf(int density) {
    ShadowFactors factors{};
    for (int i = 0; i < static_cast<int>(factors.size()); ++i)
        factors[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(shadowFactor(i, density));
    return factors;
}

IndexColours caseColours(Colour casing) {
    IndexColours colours;
    colours.fill(kNoColour);
    std::ranges::copy(caseShades(casing), colours.begin());
    return colours;
}

IndexColours whiteInside() {
    IndexColours colours;
    colours.fill(kWhite);
    colours[kOutsideIndex] = kNoColour;
    return colours;
}

void drawShadow(const ImageView& picture, const DataPadScene& scene) {
    const int offset = scene.parameters.shadowOffset;
    if (scene.parameters.shadow)
        layShadow(picture, scene.shadow, offset, offset, scene.shadowFactors);
}

Artwork drawGround(const DataPadScene& scene) {
    ScopedCanvas ground(scene.geometry.width, scene.geometry.height);
    if (!ground)
        return Artwork(GlobalBlock());
    fillRectangle(ground.dc(), ground.bounds(), scene.parameters.page);
    drawShadow(ground.pixels(), scene);
    layIndices(ground.pixels(), scene.casing, 0, 0, caseColours(scene.parameters.casing));
    return Artwork(ground.finish());
}

Artwork drawType(const ConstImageView& ink, const DataPadParameters& parameters) {
    ScopedCanvas type(ink.width, ink.height);
    if (!type)
        return Artwork(GlobalBlock());
    fillRectangle(type.dc(), type.bounds(), parameters.page);
    blendInk(type.pixels(), ink, 0, 0, parameters.text);
    return Artwork(type.finish());
}

// The case never covers type, so the text may follow it; what of the shadow falls on a character's cell follows the
// cell.
void drawText(const ImageView& picture, const DataPadScene& scene, int frame) {
    const DataPadParameters& p = scene.parameters;
    for (const PageGlyph& glyph : pageGlyphs(p.lines, frame, pageRows(p.simpleCase))) {
        const CanvasRect& source = glyph.source;
        const CanvasRect target = rectAt(glyph.target, source.right - source.left, source.bottom - source.top);
        const ImageView cell = cropped(picture, target.left, target.top, target.right, target.bottom);
        layImage(cell, cropped(scene.type.view(), source.left, source.top, source.right, source.bottom), 0, 0);
        if (p.shadow)
            layShadow(cell, scene.shadow, p.shadowOffset - glyph.target.x, p.shadowOffset - glyph.target.y,
                      scene.shadowFactors);
    }
}

template <class Rectangles>
void fillAll(HDC dc, const Rectangles& rectangles) {
    for (const FilledRect& rectangle : rectangles)
        fillRectangle(dc, rectOf(rectangle.area), rectangle.colour);
}

void drawStatus(HDC dc, const DataPadScene& scene, int frame) {
    const DataPadParameters& p = scene.parameters;
    fillAll(dc, progressBar(p.lights, frame, p.lines.size()));
    fillAll(dc, frameLamps(p.lights, frame));
    fillAll(dc, runningLight(p.lights, frame));
    fillAll(dc, statusCells(p.lights, topLine(p.lines, frame)));
}

void drawOrb(HDC dc, const DataPadScene& scene, int frame) {
    const Clipped clip(dc, rectOf(kOrbClip));
    for (const FilledRect& ring : orbRings(frame, scene.parameters.lines.size()))
        fillEllipse(dc, rectOf(ring.area), ring.colour);
}

// The strip's dots shine as the counter does, the marks at the side as the status lamps do.
void drawMarks(HDC dc, const DataPadScene& scene, int frame) {
    const DataPadColours& lights = scene.parameters.lights;
    for (const CanvasRect& dot : matrixDots(topLine(scene.parameters.lines, frame)))
        fillRectangle(dc, rectOf(dot), lights.counter);
    drawOrb(dc, scene, frame);
    std::array<POINT, 4> mark{};
    std::ranges::transform(blinkMark(frame), mark.begin(), pointOf);
    fillPolygon(dc, mark, lights.statusDark);
    fillRectangle(dc, rectOf(stepMarker(frame)), lights.status);
}

// Frame `frame`, drawn on `picture`.
GlobalBlock renderFrame(const ScopedCanvas& picture, const DataPadScene& scene, int frame) {
    if (!picture || !scene.type || !scene.ground)
        return {};
    layImage(picture.pixels(), scene.ground.view(), 0, 0);
    drawText(picture.pixels(), scene, frame);
    if (showsStatus(scene.parameters.status, scene.parameters.simpleCase))
        drawStatus(picture.dc(), scene, frame);
    drawMarks(picture.dc(), scene, frame);
    return reducedCopy(picture.pixels(), scene.geometry.percent);
}

// The case's outline, and beside it the shadow as dense as it is dark; reduced as the frames are.
GlobalBlock renderOutline(const DataPadScene& scene) {
    ScopedCanvas mask(scene.geometry.width, scene.geometry.height);
    if (!mask)
        return {};
    fillRectangle(mask.dc(), mask.bounds(), kWhite);
    drawShadow(mask.pixels(), scene);
    invertImage(mask.pixels());
    layIndices(mask.pixels(), scene.casing, 0, 0, whiteInside());
    return reducedOrUnchanged(mask.finish(), scene.geometry.percent);
}

class DataPadSequence : public FrameSequence {
public:
    DataPadSequence(HWND dialog, DataPadParameters parameters, DataPadArtwork artwork)
        : FrameSequence(dialog), artwork_(std::move(artwork)),
          picture_(artwork_.casing.view().width, artwork_.casing.view().height) {
        scene_.parameters = std::move(parameters);
        scene_.casing = artwork_.casing.view();
        scene_.shadow = artwork_.shadow.view();
        scene_.geometry = artworkGeometry(scene_.casing.width, scene_.casing.height, scene_.parameters.size, 0);
        scene_.shadowFactors = factorsOf(scene_.parameters.shadowDensity);
        if (scene_.parameters.shadow)
            softenShadow(artwork_.shadow.view());
        scene_.type = drawType(artwork_.type.view(), scene_.parameters);
        scene_.ground = drawGround(scene_);
    }

    int frames() const override { return dataPadFrameCount(scene_.parameters.lines); }
    GlobalBlock render(int index) override { return renderFrame(picture_, scene_, index); }
    GlobalBlock renderMask() override { return renderOutline(scene_); }
    GlobalBlock renderStill() override { return render(0); }
    bool insistsOnAlpha() const override { return true; }
    const void* artwork() const override { return &scene_.casing; }

private:
    DataPadArtwork artwork_;
    ScopedCanvas picture_; // the frame that is being drawn
    DataPadScene scene_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    const WaitCursor cursor;
    DataPadParameters parameters = readParameters(dialog);
    std::optional<TextPage> page = readPage(dialog);
    DataPadArtwork artwork(parameters.simpleCase);
    if (!page || !artwork)
        return nullptr;
    parameters.lines = std::move(*page);
    return std::make_unique<DataPadSequence>(dialog, std::move(parameters), std::move(artwork));
}

} // namespace veldran::data_pad
