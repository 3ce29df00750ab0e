// The face of an oscilloscope, as instruments that write with a beam share it: screen, glow, bezel, scale on the glass.
// The scale alone is drawn on the finished frame: its lines are whole pixels of it.
#pragma once

#include "base/windows/global_block.h"
#include "instruments/scopes/scope_face_model.h"
#include "render/bezel.h"
#include "render/colour.h"
#include "render/windows/canvas.h"

#include <functional>
#include <optional>

#include <windows.h>

namespace veldran {

// Identities of the controls that such an instrument has.
struct ScopeControls {
    int trace;
    int screen;
    int scale;
    int bezel;
    int panel;
    int glow;
    int pad;
    int bezelSize;
    int useBezel;
    int useScale;
};

// The face with what the controls say; `width` and `height` as ScopeParameters has them.
ScopeParameters readScope(HWND dialog, const ScopeControls& controls, int width, int height, int unit);

// What lies beyond the bezel, or the screen's colour without one.
Colour scopeBackground(HWND dialog, const ScopeControls& controls);

class ScopeFace {
public:
    // Throws std::bad_alloc.
    ScopeFace(HWND dialog, const ScopeControls& controls, const ScopeParameters& parameters);

    const ScopeGeometry& geometry() const { return geometry_; }
    Colour trace() const { return trace_; }
    Colour screen() const { return screen_; }

    // A finished frame on whose screen `write` has drawn; empty when memory is short.
    GlobalBlock render(const std::function<void(const ScopedCanvas&)>& write) const;

    // The outline of the bezel, in the size of the frames; all of the frame without one.
    GlobalBlock renderOutline() const;

private:
    ScopeGeometry geometry_;
    ScopedCanvas picture_; // the frame that is being drawn
    Colour trace_;
    Colour screen_;
    std::optional<Colour> scale_;
    std::optional<Bezel> bezel_;
};

} // namespace veldran
