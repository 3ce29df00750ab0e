// The loop itself; nothing here knows any instrument.
#include "instruments/windows/frame_loop.h"

#include "base/windows/host_link.h"
#include "render/windows/frame_image.h"
#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

#include <new>

namespace veldran {
namespace {

bool wantsAlpha(HWND dialog) {
    return isChecked(dialog, kControlAlpha);
}

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

bool appendFrames(BuildContext& context, FrameSequence& sequence) {
    if (sequence.frames() == 0)
        return false;
    for (int i = 0; i < sequence.frames(); ++i) {
        GlobalBlock image = sequence.renderFinished(i);
        if (!image || !appendFrame(context, std::move(image), sequence.delay(i)))
            return false;
        showProgress(context.host, sequence.progress(i), sequence.progressTotal());
    }
    return true;
}

// Opens the animation for the scope of `body`, whose answer is the entry's; 0 when it cannot be opened or memory runs
// out.
template <class Body>
int withSequence(BuildContext& context, OpenSequence open, Body body) {
    int done = 0;
    try {
        if (const std::unique_ptr<FrameSequence> sequence = open(context.dialog, context.host)) {
            context.artwork = sequence->artwork();
            done = body(*sequence) ? 1 : 0;
        }
    } catch (const std::bad_alloc&) {
        done = 0;
    }
    context.artwork = nullptr;
    return done;
}

} // namespace

Colour backgroundOr(HWND dialog, Colour own) {
    if (wantsAlpha(dialog) && isChecked(dialog, kControlAlphaBackground))
        return pluginSettings().number(Setting::AlphaGreyBack) & 0xFFFFFF;
    return own;
}

std::uint32_t delayUnitOf(const HostParams* host) {
    return host != nullptr ? host->flags : 0;
}

FrameSequence::FrameSequence(HWND dialog)
    : delay_(static_cast<std::uint32_t>(readParameter(dialog, kControlDelay))), alpha_(wantsAlpha(dialog)) {}

GlobalBlock FrameSequence::renderFinished(int index) {
    GlobalBlock image = render(index);
    if (!image || !alpha_)
        return image;
    if (!mask_)
        mask_ = renderMask();
    if (!mask_)
        return {};
    GlobalBlock merged = mergeAlpha(image.get(), mask_.get());
    return merged || insistsOnAlpha() ? std::move(merged) : std::move(image);
}

std::unique_ptr<FrameSequence> openFrames(OpenSequence open, HWND dialog, HostParams* host) {
    std::unique_ptr<FrameSequence> sequence = open(dialog, host);
    return sequence != nullptr && sequence->frames() > 0 ? std::move(sequence) : nullptr;
}

int runPreview(BuildContext& context, OpenSequence open) {
    return withSequence(context, open, [&](FrameSequence& sequence) {
        context.previewImage = sequence.renderStill().release();
        return context.previewImage != nullptr;
    });
}

int runBuild(BuildContext& context, OpenSequence open) {
    return withSequence(context, open, [&](FrameSequence& sequence) { return appendFrames(context, sequence); });
}

} // namespace veldran
