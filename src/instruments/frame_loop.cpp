// The loop itself; nothing here knows any instrument.
#include "instruments/frame_loop.h"

#include "host/host_link.h"
#include "render/frame_image.h"
#include "settings/output_options.h"
#include "settings/parameter_reader.h"
#include "settings/settings_store.h"

namespace veldran {
namespace {

bool appendFrame(BuildContext& context, GlobalBlock image, std::uint32_t delay) {
    FrameRecord record{};
    record.image = image.get();
    record.delay = delay;
    record.transparent = kNotTransparent;
    if (!append(*context.frames, record))
        return false;
    static_cast<void>(image.release()); // the list's now
    return true;
}

bool renderFrames(BuildContext& context, const FrameLoop& loop) {
    const bool alpha = wantsAlpha(context.dialog);
    for (int i = 0; i < loop.frames; ++i) {
        GlobalBlock image = loop.render(i);
        if (!image)
            return false;
        if (alpha)
            if (GlobalBlock merged = mergeAlpha(image.get(), context.mask))
                image = std::move(merged);
        if (!appendFrame(context, std::move(image), loop.delay))
            return false;
        showProgress(context.host, loop.progress(i), loop.progressTotal);
    }
    return true;
}

} // namespace

std::uint32_t frameDelay(HWND dialog) {
    return static_cast<std::uint32_t>(readParameter(dialog, kControlDelay));
}

bool wantsAlpha(HWND dialog) {
    return isChecked(dialog, kControlAlpha);
}

Colour backgroundOr(HWND dialog, Colour own) {
    if (wantsAlpha(dialog) && isChecked(dialog, kControlAlphaBackground))
        return pluginSettings().number(Setting::AlphaGreyBack) & 0xFFFFFF;
    return own;
}

int runFrameLoop(BuildContext& context, const FrameLoop& loop) {
    const bool done = renderFrames(context, loop);
    GlobalBlock mask(context.mask);
    context.mask = nullptr;
    return done ? 1 : 0;
}

} // namespace veldran
