// Altimeter: three pointers over a round dial with a pressure window; the altitude follows a curve. Everything is drawn
// in the pixels of the face and reduced at the end; the numbers come from altimeter_model.
#include "instruments/windows/instruments.h"

#include "instruments/dials/altimeter_model.h"
#include "instruments/dials/windows/dial.h"
#include "instruments/windows/canvas_places.h"
#include "render/windows/artwork.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

namespace veldran::altimeter {
namespace {

constexpr int kFaceResource = 7220;
constexpr int kMaskResource = 7221;                        // white around the case
constexpr Colour kDrumTextColour = makeColour(16, 17, 18); // print on the light drum of the artwork

struct AltimeterParameters {
    Colour hundreds;
    Colour thousands;
    Colour tenThousands;
    Colour background;
    int size;
    int padding; // 0 without
    std::uint32_t pressureTenths;
    int stillAltitude;          // feet
    std::vector<int> altitudes; // feet, one a frame
};

AltimeterParameters readParameters(HWND dialog) {
    AltimeterParameters p{};
    p.hundreds = readColour(dialog, kAltimeterControl<Setting::MainAltimeterHunColor>);
    p.thousands = readColour(dialog, kAltimeterControl<Setting::MainAltimeterThouColor>);
    p.tenThousands = readColour(dialog, kAltimeterControl<Setting::MainAltimeterTenThouColor>);
    p.background = background(dialog, 0);
    p.size = readParameter(dialog, kAltimeterControl<Setting::MainAltimeterSize>);
    if (isChecked(dialog, kAltimeterControl<Setting::MainAltimeterUsePadding>))
        p.padding = readParameter(dialog, kAltimeterControl<Setting::MainAltimeterSpacing>);
    p.pressureTenths = pluginSettings().number(Setting::AdvancedAltimeterBarometricPressure);
    p.stillAltitude = static_cast<int>(pluginSettings().number(Setting::AdvancedAltimeterSampleAltitude));
    p.altitudes = altimeterAltitudes(readText(dialog, kAltimeterControl<Setting::MainAltimeterDataPointList>),
                                     readParameter(dialog, kAltimeterControl<Setting::MainAltimeterFrames>));
    return p;
}

// Tilted text turns about the upper left corner of its first cell.
void drawDrum(HDC dc, int pad, std::uint32_t pressureTenths) {
    const TextStyle style(dc, kDrumTextColour);
    for (const DrumText& row : altimeterDrum(pad, pressureTenths)) {
        const Font font = boldArial(kDrumTextHeight, row.escapement);
        const Selected selected(dc, font.get());
        const int top = (row.box.top + row.box.bottom - kDrumTextHeight) / 2;
        TextOutA(dc, row.box.left, top, row.text.c_str(), static_cast<int>(row.text.size()));
    }
}

void drawPointer(HDC dc, const std::vector<CanvasPoint>& outline, Colour colour) {
    std::vector<POINT> corners;
    corners.reserve(outline.size());
    for (const CanvasPoint corner : outline)
        corners.push_back(pointOf(corner));
    fillPolygon(dc, corners, colour);
}

class AltimeterSequence : public FrameSequence {
public:
    AltimeterSequence(HWND dialog, Artwork face, Artwork mask)
        : FrameSequence(dialog), face_(std::move(face)), mask_(std::move(mask)), parameters_(readParameters(dialog)),
          geometry_(artworkGeometry(face_.view().width, face_.view().height, parameters_.size, parameters_.padding)),
          dial_(face_.view(), geometry_, parameters_.background) {
        if (!dial_)
            return;
        drawDrum(dial_.dc(), geometry_.pad, parameters_.pressureTenths);
        blendColourThroughMask(dial_.pixels(), mask_.view(), geometry_.pad, geometry_.pad, parameters_.background);
    }

    int frames() const override { return static_cast<int>(parameters_.altitudes.size()); }
    GlobalBlock render(int index) override { return renderAt(parameters_.altitudes[static_cast<std::size_t>(index)]); }
    GlobalBlock renderMask() override { return cutOutAlpha(mask_.view(), geometry_); }
    GlobalBlock renderStill() override { return renderAt(parameters_.stillAltitude); }
    bool insistsOnAlpha() const override { return true; }
    const void* artwork() const override { return &face_.view(); }

private:
    GlobalBlock renderAt(int feet) const {
        const AltimeterPointers pointers = altimeterPointers(geometry_.pad, altimeterAngles(feet));
        return dial_.renderFrame([&](HDC dc) { drawPointers(dc, pointers); });
    }

    void drawPointers(HDC dc, const AltimeterPointers& pointers) const {
        drawPointer(dc, pointers.tenThousands, parameters_.tenThousands);
        drawPointer(dc, pointers.thousands, parameters_.thousands);
        drawPointer(dc, pointers.hundreds, parameters_.hundreds);
        for (const HubDisc& disc : altimeterHub(geometry_.pad))
            fillEllipse(dc, rectOf(disc.box), disc.colour);
    }

    Artwork face_;
    Artwork mask_;
    AltimeterParameters parameters_;
    ArtworkGeometry geometry_;
    Dial dial_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    Artwork face(kFaceResource);
    Artwork mask(kMaskResource);
    return face && mask ? std::make_unique<AltimeterSequence>(dialog, std::move(face), std::move(mask)) : nullptr;
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kAltimeterControl<Setting::MainAltimeterPanelColor>));
}

} // namespace veldran::altimeter
