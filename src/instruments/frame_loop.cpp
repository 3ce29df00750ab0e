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

// Frees the mask that frames have left in the context.
class MaskGuard {
public:
    explicit MaskGuard(BuildContext& context) : context_(context) {}
    MaskGuard(const MaskGuard&) = delete;
    MaskGuard& operator=(const MaskGuard&) = delete;
    ~MaskGuard() {
        GlobalBlock mask(context_.mask);
        context_.mask = nullptr;
    }

private:
    BuildContext& context_;
};

bool appendFrames(BuildContext& context, FrameSequence& sequence) {
    for (int i = 0; i < sequence.frames(); ++i) {
        GlobalBlock image = renderWithAlpha(context, sequence, i);
        if (!image || !appendFrame(context, std::move(image), sequence.delay(i)))
            return false;
        showProgress(context.host, sequence.progress(i), sequence.progressTotal());
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

GlobalBlock renderWithAlpha(BuildContext& context, FrameSequence& sequence, int index) {
    GlobalBlock image = sequence.render(context, index);
    if (image && wantsAlpha(context.dialog))
        if (GlobalBlock merged = mergeAlpha(image.get(), context.mask))
            return merged;
    return image;
}

int buildSequence(BuildContext& context, FrameSequence* sequence) {
    const MaskGuard mask(context);
    return sequence != nullptr && appendFrames(context, *sequence) ? 1 : 0;
}

} // namespace veldran
