// Screen, beam, glow, bezel, reduction, scale, in this order.
#include "instruments/scopes/windows/scope_face.h"

#include "instruments/windows/frame_loop.h"
#include "render/light/glow.h"
#include "render/scale_grid.h"
#include "render/windows/frame_image.h"
#include "render/windows/reduced_copy.h"
#include "render/windows/shape_mask.h"
#include "render/windows/shapes.h"
#include "settings/windows/parameter_reader.h"

#include <new>

namespace veldran {
namespace {

constexpr int kGlowStrength = 100; // per cent

constexpr BezelShape bezelOf(int width) {
    return {BezelStyle::RoundedRectangle, width, width};
}

// A trace that does not glow is better than a frame that is missing.
void addGlow(const ImageView& picture, int radius) {
    try {
        glowImage(picture, kGlowStrength, radius);
    } catch (const std::bad_alloc&) { // the picture is as it was
    }
}

bool drawScale(const GlobalBlock& frame, const CanvasRect& grid, Colour colour) {
    const LockedImage image(frame.get());
    if (!image)
        return false;
    drawScaleGrid(image.view(), grid.left, grid.top, grid.right, grid.bottom, colour);
    return true;
}

} // namespace

ScopeParameters readScope(HWND dialog, const ScopeControls& controls, int width, int height, int unit) {
    return {width,
            height,
            readParameter(dialog, controls.pad),
            readParameter(dialog, controls.glow),
            readParameter(dialog, controls.bezelSize),
            isChecked(dialog, controls.useBezel),
            unit};
}

Colour scopeBackground(HWND dialog, const ScopeControls& controls) {
    const int base = isChecked(dialog, controls.useBezel) ? controls.panel : controls.screen;
    return backgroundOr(dialog, readColour(dialog, base));
}

ScopeFace::ScopeFace(HWND dialog, const ScopeControls& controls, const ScopeParameters& parameters)
    : geometry_(scopeGeometry(parameters)), picture_(geometry_.width, geometry_.height),
      trace_(readColour(dialog, controls.trace)), screen_(readColour(dialog, controls.screen)) {
    if (isChecked(dialog, controls.useScale))
        scale_ = readColour(dialog, controls.scale);
    if (parameters.useBezel && geometry_.width > 0 && geometry_.height > 0)
        bezel_.emplace(geometry_.width, geometry_.height, bezelOf(geometry_.bezelWidth),
                       readColour(dialog, controls.bezel), scopeBackground(dialog, controls));
}

GlobalBlock ScopeFace::render(const std::function<void(const ScopedCanvas&)>& write) const {
    if (!picture_)
        return {};
    fillRectangle(picture_.dc(), picture_.bounds(), screen_);
    write(picture_);
    addGlow(picture_.pixels(), geometry_.glowRadius);
    if (bezel_)
        bezel_->draw(picture_.pixels());
    GlobalBlock frame = reducedCopy(picture_.pixels(), geometry_.reductionPercent);
    if (scale_ && !drawScale(frame, geometry_.grid, *scale_))
        return {};
    return frame;
}

GlobalBlock ScopeFace::renderOutline() const {
    const auto [width, height] = std::pair(geometry_.outputWidth, geometry_.outputHeight);
    return bezel_ ? bezelMask(width, height, bezelOf(geometry_.outputBezel)) : blankFrame(width, height);
}

} // namespace veldran
