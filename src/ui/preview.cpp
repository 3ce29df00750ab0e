// The frame comes from the instrument's own preview entry.
#include "ui/preview.h"

#include "base/gdi.h"
#include "instruments/effect_registry.h"
#include "render/frame_image.h"
#include "settings/output_options.h"
#include "ui/plugin_fonts.h"

#include <algorithm>

namespace veldran {
namespace {

void drawMessage(const DRAWITEMSTRUCT& item, const std::string& message) {
    const PluginFonts* fonts = currentFonts();
    const Selected font(item.hDC, fonts != nullptr ? fonts->labelFont.get() : nullptr);
    const TextStyle style(item.hDC, GetSysColor(COLOR_GRAYTEXT));
    RECT box = item.rcItem;
    DrawTextA(item.hDC, message.c_str(), -1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void drawImage(const DRAWITEMSTRUCT& item, const LockedBlock& block, const ImageView& view) {
    const int areaWidth = item.rcItem.right - item.rcItem.left;
    const int areaHeight = item.rcItem.bottom - item.rcItem.top;
    const double fit = std::min({1.0, double(areaWidth) / view.width, double(areaHeight) / view.height});
    const int width = static_cast<int>(view.width * fit);
    const int height = static_cast<int>(view.height * fit);
    SetStretchBltMode(item.hDC, HALFTONE);
    StretchDIBits(item.hDC, item.rcItem.left + (areaWidth - width) / 2, item.rcItem.top + (areaHeight - height) / 2,
                  width, height, 0, 0, view.width, view.height,
                  block.data() + sizeof(BitmapHeader) + colourTableBytes(view.bits),
                  reinterpret_cast<const BITMAPINFO*>(block.data()), DIB_RGB_COLORS, SRCCOPY);
}

} // namespace

void Preview::render(HWND dialog, HostParams* host, int effect) {
    const EffectDescriptor& descriptor = effectDescriptor(effect);
    image_.reset();
    message_ = "This instrument cannot be drawn yet.";
    if (descriptor.preview != nullptr) {
        BuildContext context{};
        context.dialog = dialog;
        context.host = host;
        const bool rendered = descriptor.preview(&context) != 0;
        image_.reset(context.previewImage);
        message_ = rendered ? "" : "The preview cannot be drawn.";
    }
    InvalidateRect(GetDlgItem(dialog, kControlPreview), nullptr, TRUE);
}

void Preview::draw(const DRAWITEMSTRUCT& item) const {
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
    const LockedBlock block(image_.get());
    const std::optional<ImageView> view = block ? viewPackedBitmap(block.bytes()) : std::nullopt;
    if (view)
        drawImage(item, block, *view);
    else
        drawMessage(item, message_);
}

} // namespace veldran
