// Radar: a round screen, a sweep with an afterglow, the graticule over it, and markers that light up under the sweep.
// Everything is drawn in the pixels of the graticule and reduced at the end; the numbers come from radar_model.
#include "instruments/radar.h"

#include "base/gdi.h"
#include "instruments/canvas_places.h"
#include "instruments/radar_model.h"
#include "render/artwork.h"
#include "render/blend.h"
#include "render/canvas.h"
#include "render/shape_mask.h"
#include "render/shapes.h"
#include "settings/parameter_reader.h"
#include "settings/settings_store.h"

#include <memory>

namespace veldran {
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

// What is the same for every frame.
struct RadarScene {
    RadarParameters parameters;
    RadarGeometry geometry;
    ConstImageView graticule;
    Font labelFont;
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
    p.background = radarBackground(dialog, 0);
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

void drawScreen(const ScopedCanvas& picture, const RadarScene& scene) {
    fillRectangle(picture.dc(), picture.bounds(), scene.parameters.background);
    fillDisc(picture.dc(), pointOf(scene.geometry.centre), kRadarScreenRadius, scene.parameters.screen);
}

void drawSweep(const ScopedCanvas& glow, const RadarScene& scene, int angle) {
    const POINT centre = pointOf(scene.geometry.centre);
    FillRect(glow.dc(), &glow.bounds(), static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    for (const SweepLine& line :
         sweepLines(scene.geometry, angle, scene.parameters.traceAngle, sweepDirection(scene.parameters.increment))) {
        drawLine(glow.dc(), centre, pointOf(line.end), 2 * scene.geometry.unit,
                 makeColour(line.grey, line.grey, line.grey));
    }
    fillDisc(glow.dc(), centre, kRadarHubRadius, 0);
}

// The box of a label of the given text size, beside the marker and turned to the screen's centre.
RECT labelBox(const RadarScene& scene, CanvasPoint marker, SIZE text) {
    const CanvasPoint centre = scene.geometry.centre;
    const LONG left = marker.x > centre.x ? marker.x - text.cx - kLabelGapLeft : marker.x + kLabelGapRight;
    const LONG top = marker.y > centre.y ? marker.y - text.cy - kLabelGapAbove : marker.y;
    RECT box{left, top, left + text.cx, top + text.cy};
    InflateRect(&box, kLabelMarginX, kLabelMarginY);
    return box;
}

void drawLabel(HDC dc, const RadarScene& scene, const std::string& name, CanvasPoint position) {
    const Colour colour = scene.parameters.marker;
    const Selected font(dc, scene.labelFont.get());
    SIZE text{};
    GetTextExtentPoint32A(dc, name.c_str(), static_cast<int>(name.size()), &text);
    RECT box = labelBox(scene, position, text);
    {
        const Pen pen(CreatePen(PS_INSIDEFRAME, scene.geometry.unit, colour));
        const Brush brush(CreateSolidBrush(scene.parameters.screen));
        const Selected selectedPen(dc, pen.get());
        const Selected selectedBrush(dc, brush.get());
        Rectangle(dc, box.left, box.top, box.right, box.bottom);
    }
    const TextStyle style(dc, colour);
    DrawTextA(dc, name.c_str(), static_cast<int>(name.size()), &box,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void drawMarker(HDC dc, const RadarScene& scene, const RadarMarker& marker, const ConstImageView& glow) {
    const CanvasPoint at = markerPosition(scene.geometry, marker);
    Colour colour = scene.parameters.marker;
    if (scene.parameters.pingMarkers && glow.contains(at.x, at.y))
        colour = mixColours(colour, scene.parameters.scale, *glow.pixel(at.x, at.y));
    fillRectangle(dc, {at.x - kMarkerHalfSide, at.y - kMarkerHalfSide, at.x + kMarkerHalfSide, at.y + kMarkerHalfSide},
                  colour);
    if (!marker.name.empty())
        drawLabel(dc, scene, marker.name, at);
}

// One frame with the sweep's leading edge at `angle` degrees.
GlobalBlock renderFrame(const RadarScene& scene, int angle) {
    const RadarGeometry& geometry = scene.geometry;
    ScopedCanvas picture(geometry.width, geometry.height);
    const ScopedCanvas glow(geometry.width, geometry.height);
    if (!picture || !glow)
        return {};
    drawScreen(picture, scene);
    drawSweep(glow, scene, angle);
    blendColourThroughMask(picture.pixels(), glow.pixels(), 0, 0, scene.parameters.trace);
    blendInk(picture.pixels(), scene.graticule, geometry.pad, geometry.pad, scene.parameters.scale);
    for (const RadarMarker& marker : scene.parameters.markers)
        drawMarker(picture.dc(), scene, marker, glow.pixels());
    return reducedOrUnchanged(picture.finish(), geometry.percent);
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
    RadarSequence(HWND dialog, Artwork graticule) : FrameSequence(dialog), graticule_(std::move(graticule)) {
        scene_.parameters = readParameters(dialog);
        scene_.graticule = graticule_.view();
        scene_.geometry = radarGeometry(scene_.graticule.width, scene_.graticule.height, scene_.parameters.size,
                                        scene_.parameters.padding);
        scene_.labelFont = boldArial(scene_.parameters.labelHeight, 0);
        increment_ = clampIncrement(scene_.parameters.increment);
    }

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
    int increment_ = 1;
    RadarScene scene_;
};

} // namespace

std::unique_ptr<FrameSequence> openRadar(HWND dialog, HostParams*) {
    Artwork graticule(kGraticuleResource);
    return graticule ? std::make_unique<RadarSequence>(dialog, std::move(graticule)) : nullptr;
}

Colour radarBackground(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kRadarControl<Setting::MainRadarPanelColor>));
}

} // namespace veldran
