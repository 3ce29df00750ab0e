// The system's text size is that of its logical pixels: 96 an inch are 100 %.
#include "ui/windows/text_scale.h"

#include <windows.h>

namespace veldran {
namespace {

constexpr int kPixelsPerInchAt100 = 96;
int forcedPercent = 0;

} // namespace

int textSizePercent() {
    if (forcedPercent > 0)
        return forcedPercent;
    const HDC screen = GetDC(nullptr);
    const int pixelsPerInch = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return pixelsPerInch > 0 ? MulDiv(100, pixelsPerInch, kPixelsPerInchAt100) : 100;
}

void forceTextSize(int percent) {
    forcedPercent = percent;
}

int scaled(int pixels) {
    return MulDiv(pixels, textSizePercent(), 100);
}

} // namespace veldran
