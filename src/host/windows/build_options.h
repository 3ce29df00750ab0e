// The output options of one build, read from the dialog once.
#pragma once

#include "host/windows/build_driver.h"

namespace veldran {

struct BuildOptions {
    int effect;  // row of the effect list
    int palette; // choice of fixedPalette
    bool alpha;
    bool trueColour; // also when alpha is on
    bool customPalette;
    bool dither;
    bool supercompress;
    bool transparent;
    bool maskBackground;
    bool addComment;
};

BuildOptions readBuildOptions(HWND dialog, BuildKind kind);

// Unchecks "Alpha transparency" for a test build, which never carries alpha, and puts the check back at its end.
class AlphaCheckGuard {
public:
    AlphaCheckGuard(HWND dialog, BuildKind kind);
    AlphaCheckGuard(const AlphaCheckGuard&) = delete;
    AlphaCheckGuard& operator=(const AlphaCheckGuard&) = delete;
    ~AlphaCheckGuard();

private:
    HWND dialog_;
    UINT saved_;
};

} // namespace veldran
