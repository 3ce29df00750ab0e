// One build, stage by stage. Every stage answers whether the next one may begin; the first that may not has shown its
// message.
#include "host/windows/build_driver.h"

#include "base/windows/host_link.h"
#include "base/windows/wait_cursor.h"
#include "host/windows/build_options.h"
#include "host/windows/frame_reduction.h"
#include "host/windows/message_box.h"
#include "instruments/windows/effect_registry.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <string>

namespace veldran {
namespace {

constexpr char kComment[] =
    "CREATED BY...\r\n\r\n"
    "This animation was created by Korvel's Tavolin or Merrowin and the Voltane #1 plugin.\r\n\r\n"
    "See\r\n\r\n    https://www.korvel.example\r\n\r\nfor more information.";

// A task that the host has created: finished in any case.
class OpenTask {
public:
    OpenTask(const HostParams* host, HostTaskInfo& task) : host_(host), task_(task) {}
    OpenTask(const OpenTask&) = delete;
    OpenTask& operator=(const OpenTask&) = delete;
    ~OpenTask() { sendToHost(host_, &task_, kHostFinishTask, succeeded_ ? 1 : 0, 0); }
    void succeed() { succeeded_ = true; }

private:
    const HostParams* host_;
    HostTaskInfo& task_;
    bool succeeded_ = false;
};

class AnimationBuild {
public:
    AnimationBuild(HWND dialog, HostParams* host, BuildKind kind)
        : dialog_(dialog), host_(host), kind_(kind), options_(readBuildOptions(dialog, kind)) {}
    AnimationBuild(const AnimationBuild&) = delete;
    AnimationBuild& operator=(const AnimationBuild&) = delete;
    ~AnimationBuild() { freeAll(frames_); }

    bool run() {
        askBackground();
        plan_ = planFixedPalette(options_.palette);
        return renderFrames() && quantize() && supercompress() && remap() && deliver();
    }

private:
    bool fail(const std::string& message) {
        showMessage(dialog_, message);
        return false;
    }
    bool failMemory() { return fail(errorText(ErrorCode::Memory)); }

    Dithering dithering() const { return options_.dither ? Dithering::ErrorDiffusion : Dithering::None; }

    void askBackground();
    bool renderFrames();
    bool quantize();
    bool supercompress();
    bool remap();
    bool deliver();
    bool addFrames();
    void setBackground();
    bool fillTask();

    HWND dialog_;
    HostParams* host_;
    BuildKind kind_;
    BuildOptions options_;
    SlotWish wish_{};
    PalettePlan plan_;
    FrameList frames_;
    HostTaskInfo task_{};
};

void AnimationBuild::askBackground() {
    const EffectDescriptor& effect = effectDescriptor(options_.effect);
    wish_.supercompress = options_.supercompress;
    wish_.colour = effect.background(dialog_, options_.transparent);
    wish_.transparent = options_.transparent && wish_.colour != kNoColour;
    wish_.background = wish_.transparent || (options_.maskBackground && wish_.colour != kNoColour);
}

bool AnimationBuild::renderFrames() {
    const EffectDescriptor& effect = effectDescriptor(options_.effect);
    clearProgress(host_);
    // Once when the stage begins and once when the instrument does.
    showStatus(host_, "Building");
    showStatus(host_, "Building");
    BuildContext context{};
    context.dialog = dialog_;
    context.frames = &frames_;
    context.host = host_;
    const bool built = effect.build(&context) != 0;
    if (!built)
        return failMemory();
    clearProgress(host_);
    return frames_.count > 0 || failMemory();
}

bool AnimationBuild::quantize() {
    if (!options_.customPalette || options_.trueColour)
        return true;
    showStatus(host_, "Quantizing");
    const LockedFrames frames(frames_);
    std::optional<PalettePlan> plan = frames ? planAdaptivePalette(frames.views(), wish_, dithering()) : std::nullopt;
    if (!plan)
        return failMemory();
    plan_ = *plan;
    return true;
}

bool AnimationBuild::supercompress() {
    if (!options_.supercompress)
        return true;
    showStatus(host_, "Supercompressing");
    return makeChangeMasks(frames_, wish_.colour, host_) || failMemory();
}

bool AnimationBuild::remap() {
    showStatus(host_, "Remapping");
    if (options_.trueColour) {
        for (int i = 0; i < frames_.count; ++i)
            showProgress(host_, i, frames_.count);
        return true;
    }
    if (!plan_.adaptive) {
        const LockedFrames frames(frames_);
        if (!frames)
            return failMemory();
        plan_.slot = findFreeSlot(plan_, frames.views(), wish_, dithering());
    }
    return remapFrames(frames_, plan_, wish_, dithering(), host_) || failMemory();
}

bool AnimationBuild::fillTask() {
    const std::optional<FrameSize> largest = largestFrame(frames_);
    if (!largest)
        return failMemory();
    task_.size = sizeof task_;
    task_.version = kPluginInterfaceVersion;
    task_.owner = dialog_;
    task_.bitsPerPixel = static_cast<std::uint32_t>(plan_.depth);
    task_.width = static_cast<std::uint32_t>(largest->width);
    task_.height = static_cast<std::uint32_t>(largest->height);
    std::memcpy(task_.palette, plan_.palette.data(), sizeof task_.palette);
    task_.frameCount = static_cast<std::uint32_t>(frames_.count);
    return true;
}

void AnimationBuild::setBackground() {
    if ((host_->flags & kDelayInHundredths) != 0)
        sendToHost(host_, &task_, kHostSetBackground, kBackgroundByIndex, backgroundEntry(plan_, wish_.colour));
    else
        sendToHost(host_, &task_, kHostSetBackground, kBackgroundByColour, static_cast<std::intptr_t>(wish_.colour));
}

bool AnimationBuild::addFrames() {
    const LockedBlock lock(frames_.block);
    const auto* records = reinterpret_cast<const FrameRecord*>(lock.data());
    if (!lock)
        return failMemory();
    for (int i = 0; i < frames_.count; ++i) {
        HostImageInfo info{};
        info.size = sizeof info;
        info.version = kPluginInterfaceVersion;
        info.image = records[i].image;
        info.alpha = options_.alpha ? 1 : 0;
        info.delay = records[i].delay;
        info.index = static_cast<std::uint32_t>(i);
        info.transparentIndex = options_.alpha ? 0 : records[i].transparent;
        if (sendToHost(host_, &task_, kHostAddImage, 0, reinterpret_cast<std::intptr_t>(&info)) == 0)
            return fail("There has been an error adding an image to the current file object.");
    }
    return true;
}

bool AnimationBuild::deliver() {
    if (!fillTask())
        return false;
    const HostCommand create = kind_ == BuildKind::Test ? kHostCreateTestTask : kHostCreateTask;
    if (sendToHost(host_, nullptr, create, 0, reinterpret_cast<std::intptr_t>(&task_)) == 0)
        return fail("Error creating new task.");
    OpenTask open(host_, task_);
    setBackground();
    if (!addFrames())
        return false;
    if (options_.addComment)
        sendToHost(host_, &task_, kHostAddComment, 0, reinterpret_cast<std::intptr_t>(kComment));
    open.succeed();
    return true;
}

} // namespace

bool buildAnimation(HWND dialog, HostParams* host, BuildKind kind) {
    const AlphaCheckGuard alpha(dialog, kind);
    const WaitCursor cursor;
    bool done = false;
    try {
        done = AnimationBuild(dialog, host, kind).run();
    } catch (const std::exception&) { // std::bad_alloc as a rule
        showError(dialog, ErrorCode::Memory);
    }
    if (!done)
        clearProgress(host);
    return done;
}

} // namespace veldran
