// The preview area: one frame of the chosen instrument, redrawn shortly after the last change.
#pragma once

#include "base/global_block.h"
#include "host/plugin_abi.h"

#include <string>

#include <windows.h>

namespace veldran {

class Preview {
public:
    // Renders the effect's representative frame; without one the area says why.
    void render(HWND dialog, HostParams* host, int effect);
    // Draws the frame centred in the owner-drawn area, scaled down when it is too large.
    void draw(const DRAWITEMSTRUCT& item) const;

private:
    GlobalBlock image_;
    std::string message_;
};

} // namespace veldran
