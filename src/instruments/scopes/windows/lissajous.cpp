// Lissajous figure: the beam of an oscilloscope. Drawn at twice the output's size and halved. The curve comes from
// lissajous_model, the rest of the picture from scope_face.
#include "instruments/windows/instruments.h"

#include "instruments/scopes/lissajous_model.h"
#include "instruments/scopes/lissajous_parameters.h"
#include "instruments/scopes/windows/scope_face.h"
#include "instruments/windows/canvas_places.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"

namespace veldran::lissajous {
namespace {

template <Setting kSetting>
constexpr int kLissajousControl = kControlOf<kLissajousParameters, kLissajousFirstControl, kSetting>;

constexpr ScopeControls kScopeControls = {
    kLissajousControl<Setting::MainLissajousGreenColor>, kLissajousControl<Setting::MainLissajousBlackColor>,
    kLissajousControl<Setting::MainLissajousScaleColor>, kLissajousControl<Setting::MainLissajousBezelColor>,
    kLissajousControl<Setting::MainLissajousPanelColor>, kLissajousControl<Setting::MainLissajousGlow>,
    kLissajousControl<Setting::MainLissajousPadsize>,    kLissajousControl<Setting::MainLissajousBezelSize>,
    kLissajousControl<Setting::MainLissajousUseBezel>,   kLissajousControl<Setting::MainLissajousUseScale>,
};

LissajousParameters readParameters(HWND dialog) {
    LissajousParameters p{};
    p.horizontal = readParameter(dialog, kLissajousControl<Setting::MainLissajousHorz>);
    p.vertical = readParameter(dialog, kLissajousControl<Setting::MainLissajousVert>);
    p.increment = readChoiceNumber(dialog, kLissajousControl<Setting::MainLissajousIncrement>);
    p.varyY = isChecked(dialog, kLissajousControl<Setting::MainLissajousPhaseY>);
    p.size = readParameter(dialog, kLissajousControl<Setting::MainLissajousSize>);
    p.traceSize = readParameter(dialog, kLissajousControl<Setting::MainLissajousTraceSize>);
    return p;
}

class LissajousSequence : public FrameSequence {
public:
    LissajousSequence(HWND dialog, const LissajousParameters& parameters)
        : FrameSequence(dialog), parameters_(parameters),
          face_(dialog, kScopeControls,
                readScope(dialog, kScopeControls, parameters.size, parameters.size, kLissajousUnit)) {}

    int frames() const override { return lissajousFrameCount(parameters_.increment); }
    GlobalBlock render(int index) override {
        return face_.render([&](const ScopedCanvas& screen) { drawTrace(screen.dc(), index); });
    }
    GlobalBlock renderMask() override { return face_.renderOutline(); }
    GlobalBlock renderStill() override { return render(0); }

private:
    void drawTrace(HDC dc, int index) const {
        std::vector<POINT> corners;
        const LissajousPhases phases = lissajousPhases(parameters_, index);
        for (const CanvasPoint corner : lissajousCurve(parameters_, phases, face_.geometry().offset))
            corners.push_back(pointOf(corner));
        corners.push_back(corners.front());
        drawPolyline(dc, corners, kLissajousUnit * parameters_.traceSize, face_.trace());
    }

    LissajousParameters parameters_;
    ScopeFace face_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams*) {
    return std::make_unique<LissajousSequence>(dialog, readParameters(dialog));
}

Colour background(HWND dialog, int) {
    return scopeBackground(dialog, kScopeControls);
}

} // namespace veldran::lissajous
