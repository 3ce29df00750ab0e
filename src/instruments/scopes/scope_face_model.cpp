// The face of an oscilloscope: numbers only.
#include "instruments/scopes/scope_face_model.h"

namespace veldran {
namespace {

constexpr int kGlowMargin = 2; // so that even a glow of 1 is seen once a canvas of twice the size is halved

} // namespace

ScopeGeometry scopeGeometry(const ScopeParameters& p) {
    const int bezel = p.useBezel ? p.bezelSize : 0;
    const int gridInset = p.pad / 2 + bezel;
    ScopeGeometry geometry{};
    geometry.bezelWidth = p.unit * bezel;
    geometry.outputBezel = bezel;
    geometry.offset = p.unit * (bezel + p.pad);
    geometry.outputWidth = p.width + 2 * (bezel + p.pad);
    geometry.outputHeight = p.height + 2 * (bezel + p.pad);
    geometry.width = p.unit * geometry.outputWidth;
    geometry.height = p.unit * geometry.outputHeight;
    // A glow reaches as many canvas pixels as it says on a canvas of twice the size, and half as many on a small one.
    geometry.glowRadius = p.glow > 0 ? (p.glow + kGlowMargin) * p.unit / 2 : 0;
    geometry.grid = {gridInset, gridInset, geometry.outputWidth - gridInset, geometry.outputHeight - gridInset};
    geometry.reductionPercent = 100 / p.unit;
    return geometry;
}

} // namespace veldran
