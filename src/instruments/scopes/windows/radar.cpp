// Radar: a round screen, a sweep with an afterglow, the graticule over it, and markers that light up under the sweep.
// Everything is drawn in the pixels of the graticule and reduced at the end; the numbers come from radar_model.
#include "instruments/windows/instruments.h"

#include "base/windows/gdi.h"
#include "instruments/scopes/radar_model.h"
#include "instruments/shape_runs.h"
#include "instruments/windows/canvas_places.h"
#include "render/blend.h"
#include "render/layers.h"
#include "render/painted_shapes.h"
#include "render/windows/artwork.h"
#include "render/windows/canvas.h"
#include "render/windows/reduced_copy.h"
#include "render/windows/shape_mask.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

#include <cstring>
#include <map>
#include <memory>
#include <utility>

namespace veldran::radar {
namespace {

constexpr int kGraticuleResource = 7210;
constexpr int kMarkerControl = kRadarMarkerList;
constexpr int kPreviewAngle = 45;
constexpr int kMarkerHalfSide = 6;

// A label stands beside its marker, on the side of the centre.
constexpr int kLabelGapLeft = 16;
constexpr int kLabelGapRight = 14;
constexpr int kLabelGapAbove = 2;
constexpr int kLabelMarginX = 4;
constexpr int kLabelMarginY = 1;
constexpr Colour kWhite = 0xFFFFFF;
constexpr std::uint32_t kTallestLabel = 526; // the artwork's height

struct RadarParameters {
    Colour trace;
    Colour screen;
    Colour scale;
    Colour marker;
    Colour background;
    int size;
    int padding;
    int increment;
    int traceAngle;
    bool pingMarkers;
    int labelHeight;                  // graticule pixels
    std::vector<RadarMarker> markers; // those to be drawn
};

std::vector<RadarMarker> readMarkers(HWND dialog) {
    std::vector<RadarMarker> markers;
    if (isChecked(dialog, kRadarControl<Setting::MainRadarShowMarkers>))
        for (const std::string& line : readLines(dialog, kMarkerControl))
            markers.push_back(parseRadarMarker(line));
    return markers;
}

RadarParameters readParameters(HWND dialog) {
    RadarParameters p{};
    p.trace = readColour(dialog, kRadarControl<Setting::MainRadarGreenColor>);
    p.screen = readColour(dialog, kRadarControl<Setting::MainRadarBlackColor>);
    p.scale = readColour(dialog, kRadarControl<Setting::MainRadarWhiteColor>);
    p.marker = readColour(dialog, kRadarControl<Setting::MainRadarMarkerColor>);
    p.background = background(dialog, 0);
    p.size = readParameter(dialog, kRadarControl<Setting::MainRadarSize>);
    p.padding = readParameter(dialog, kRadarControl<Setting::MainRadarPadding>);
    p.increment = readChoiceNumber(dialog, kRadarControl<Setting::MainRadarIncrement>);
    p.traceAngle = readParameter(dialog, kRadarControl<Setting::MainRadarAngle>);
    p.pingMarkers = isChecked(dialog, kRadarControl<Setting::MainRadarPingMarkers>);
    p.labelHeight =
        static_cast<int>(std::min(pluginSettings().number(Setting::AdvancedRadarMarkerFontSize), kTallestLabel));
    p.markers = readMarkers(dialog);
    return p;
}

// How brightly the sweep lights each pixel of a frame.
class SweepGlow {
public:
    explicit SweepGlow(const RadarGeometry& geometry)
        : geometry_(geometry), board_(geometry.width, geometry.height),
          glow_(createImage(geometry.width, geometry.height, 24)) {
        if (!*this)
            return;
        fillDisc(board_.dc(), pointOf(geometry.centre), kRadarHubRadius, kWhite);
        hub_ = takeFromBoard(geometry.centre, 2 * kRadarHubRadius);
    }

    // False when memory is exhausted.
    explicit operator bool() const { return board_ && glow_; }
    const ImageView& view() const { return glow_.view(); }

    void draw(std::span<const SweepLine> lines) {
        const ImageView& glow = glow_.view();
        for (int y = 0; y < glow.height; ++y)
            std::memset(glow.row(y), 0, 3 * static_cast<std::size_t>(glow.width));
        for (const SweepLine& line : lines)
            fillRuns(glow, coverOf(line.end), line.grey);
        fillRuns(glow, hub_, 0);
    }

private:
    // A line has whole-number ends on a circle: at most 1800 of them, of which a frame draws up to 709.
    const std::vector<PixelRun>& coverOf(CanvasPoint end) {
        std::vector<PixelRun>& cover = covers_[{end.x, end.y}];
        if (cover.empty()) {
            const int width = 2 * geometry_.unit;
            drawLine(board_.dc(), pointOf(geometry_.centre), pointOf(end), width, kWhite);
            cover = takeFromBoard(end, width);
        }
        return cover;
    }

    // What was drawn on the board from the centre to `end`; the board is black again.
    std::vector<PixelRun> takeFromBoard(CanvasPoint end, int width) {
        const ImageView board = board_.pixels();
        std::vector<PixelRun> cover = coverOfLine(board, geometry_.centre, end, width);
        fillRuns(board, cover, 0);
        return cover;
    }

    RadarGeometry geometry_;
    ScopedCanvas board_; // one shape after the other is drawn on it, to see what it covers
    Artwork glow_;
    std::vector<PixelRun> hub_;
    std::map<std::pair<int, int>, std::vector<PixelRun>> covers_; // of lines, by their end
};

// A marker, and its label as it stands in all frames.
struct MarkerPicture {
    CanvasPoint at;
    std::vector<PixelRun> labelCover; // what of it lies in the frame; its corners are round
    CanvasPoint labelCorner;
    Artwork label{GlobalBlock()}; // where it covers something
};

// The box of a label of the given text size, beside the marker and turned to the screen's centre.
RECT labelBox(CanvasPoint centre, CanvasPoint marker, SIZE text) {
    const LONG left = marker.x > centre.x ? marker.x - text.cx - kLabelGapLeft : marker.x + kLabelGapRight;
    const LONG top = marker.y > centre.y ? marker.y - text.cy - kLabelGapAbove : marker.y;
    RECT box{left, top, left + text.cx, top + text.cy};
    InflateRect(&box, kLabelMarginX, kLabelMarginY);
    return box;
}

void drawFrame(HDC dc, const RECT& box, int width, Colour line, Colour fill) {
    const Pen pen = required(Pen(CreatePen(PS_INSIDEFRAME, width, line)));
    const Brush brush = required(Brush(CreateSolidBrush(fill)));
    const Selected selectedPen(dc, pen.get());
    const Selected selectedBrush(dc, brush.get());
    Rectangle(dc, box.left, box.top, box.right, box.bottom);
}

Artwork copyOf(const ConstImageView& part) {
    Artwork copy(createImage(part.width, part.height, 24));
    if (!copy)
        throwOutOfMemory();
    layImage(copy.view(), part, 0, 0);
    return copy;
}

// Takes the label from the board, which is black before and after.
void drawLabel(MarkerPicture& picture, const ScopedCanvas& board, const RadarParameters& p,
               const RadarGeometry& geometry, const std::string& name) {
    const HDC dc = board.dc();
    const int length = static_cast<int>(name.size());
    SIZE text{};
    GetTextExtentPoint32A(dc, name.c_str(), length, &text);
    RECT box = labelBox(geometry.centre, picture.at, text);
    const ImageView part = cropped(board.pixels(), box.left, box.top, box.right, box.bottom);
    if (part.height == 0)
        return;
    drawFrame(dc, box, geometry.unit, kWhite, kWhite);
    picture.labelCover = coverIn(board.pixels(), {box.left, box.top, box.right, box.bottom});
    picture.labelCorner = {std::max<int>(box.left, 0), std::max<int>(box.top, 0)};
    drawFrame(dc, box, geometry.unit, p.marker, p.screen);
    const TextStyle style(dc, p.marker);
    DrawTextA(dc, name.c_str(), length, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    picture.label = copyOf(part);
    fillRuns(board.pixels(), picture.labelCover, 0);
}

std::vector<MarkerPicture> drawMarkers(const RadarParameters& p, const RadarGeometry& geometry) {
    std::vector<MarkerPicture> pictures;
    if (p.markers.empty())
        return pictures;
    const ScopedCanvas board(geometry.width, geometry.height);
    if (!board)
        throwOutOfMemory();
    const Font font = boldArial(p.labelHeight, 0);
    const Selected selectedFont(board.dc(), font.get());
    for (const RadarMarker& marker : p.markers) {
        MarkerPicture& picture = pictures.emplace_back();
        picture.at = markerPosition(geometry, marker);
        if (!marker.name.empty())
            drawLabel(picture, board, p, geometry, marker.name);
    }
    return pictures;
}

// What is the same for every frame.
struct RadarScene {
    RadarParameters parameters;
    RadarGeometry geometry;
    ConstImageView graticule;
    std::vector<PixelRun> graticuleInk;
    Artwork ground; // the panel and the dark screen
    SweepGlow glow;
    std::vector<MarkerPicture> markers;
    Artwork picture; // the frame that is being drawn
};

Artwork drawGround(const RadarParameters& p, const RadarGeometry& geometry) {
    ScopedCanvas ground(geometry.width, geometry.height);
    if (!ground)
        return Artwork(GlobalBlock());
    fillRectangle(ground.dc(), ground.bounds(), p.background);
    fillDisc(ground.dc(), pointOf(geometry.centre), kRadarScreenRadius, p.screen);
    return Artwork(ground.finish());
}

// Where the sweep may be.
ImageView sweptPart(const ImageView& image, const RadarGeometry& geometry) {
    const auto [x, y] = geometry.centre;
    const int reach = kRadarSweepRadius + 2 * geometry.unit;
    return cropped(image, x - reach, y - reach, x + reach, y + reach);
}

void drawMarker(const ImageView& picture, const RadarScene& scene, const MarkerPicture& marker) {
    const CanvasPoint at = marker.at;
    const ConstImageView& glow = scene.glow.view();
    Colour colour = scene.parameters.marker;
    if (scene.parameters.pingMarkers && glow.contains(at.x, at.y))
        colour = mixColours(colour, scene.parameters.scale, *glow.pixel(at.x, at.y));
    const ShapeBox place{double(at.x), double(at.y), double(at.x), double(at.y)};
    paintBox(picture, place.inset(-kMarkerHalfSide), 0, Edges::Hard,
             [colour](double, double) { return Paint{colour}; });
    if (marker.label)
        layRuns(picture, marker.labelCover, marker.label.view(), marker.labelCorner);
}

// One frame with the sweep's leading edge at `angle` degrees.
GlobalBlock renderFrame(RadarScene& scene, int angle) {
    const RadarGeometry& geometry = scene.geometry;
    const RadarParameters& p = scene.parameters;
    if (!scene.glow || !scene.ground || !scene.picture)
        return {};
    scene.glow.draw(sweepLines(geometry, angle, p.traceAngle, sweepDirection(p.increment)));
    const ImageView& picture = scene.picture.view();
    layImage(picture, scene.ground.view(), 0, 0);
    blendColourThroughMask(sweptPart(picture, geometry), sweptPart(scene.glow.view(), geometry), 0, 0, p.trace);
    blendInkRuns(picture, scene.graticule, scene.graticuleInk, {geometry.pad, geometry.pad}, p.scale);
    for (const MarkerPicture& marker : scene.markers)
        drawMarker(picture, scene, marker);
    return reducedCopy(picture, geometry.percent);
}

RadarScene makeScene(HWND dialog, const ConstImageView& graticule) {
    const RadarParameters p = readParameters(dialog);
    const RadarGeometry geometry = radarGeometry(graticule.width, graticule.height, p.size, p.padding);
    return {p,
            geometry,
            graticule,
            inkRuns(graticule),
            drawGround(p, geometry),
            SweepGlow(geometry),
            drawMarkers(p, geometry),
            Artwork(createImage(geometry.width, geometry.height, 24))};
}

// The outline of the round screen, reduced as the frames are.
GlobalBlock renderOutline(const RadarGeometry& geometry) {
    const int radius = geometry.unit + kRadarScreenRadius;
    const CanvasPoint centre = geometry.centre;
    return ellipseMaskReduced(geometry.width, geometry.height,
                              {centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius},
                              geometry.percent);
}

class RadarSequence : public FrameSequence {
public:
    RadarSequence(HWND dialog, Artwork graticule)
        : FrameSequence(dialog), graticule_(std::move(graticule)), scene_(makeScene(dialog, graticule_.view())),
          increment_(clampIncrement(scene_.parameters.increment)) {}

    int frames() const override { return sweepFrameCount(increment_); }
    GlobalBlock render(int index) override { return renderFrame(scene_, index * increment_); }
    GlobalBlock renderMask() override { return renderOutline(scene_.geometry); }
    GlobalBlock renderStill() override {
        const bool clockwise = sweepDirection(scene_.parameters.increment) == SweepDirection::Clockwise;
        return renderFrame(scene_, clockwise ? kPreviewAngle : -kPreviewAngle);
    }
    int progress(int index) const override { return index * std::abs(increment_); }
    int progressTotal() const override { return 360; }
    const void* artwork() const override { return &scene_.graticule; }

private:
    Artwork graticule_;
    RadarScene scene_;
    int increment_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    Artwork graticule(kGraticuleResource);
    return graticule ? std::make_unique<RadarSequence>(dialog, std::move(graticule)) : nullptr;
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kRadarControl<Setting::MainRadarPanelColor>));
}

} // namespace veldran::radar
