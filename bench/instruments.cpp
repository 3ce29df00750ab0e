// Every instrument that can be drawn, with its first settings, from its controls to finished frames. The plugin's parts
// are linked in; the main dialog is opened for its controls and closed again.
#include "bench.h"

#include "base/module.h"
#include "host/plugin_abi.h"
#include "instruments/effect_list.h"
#include "instruments/frame_loop.h"
#include "render/frame_image.h"
#include "settings/output_options.h"
#include "ui/main_dialog.h"
#include "ui/plugin_fonts.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include <commctrl.h>

namespace veldran::bench {
namespace {

constexpr int kMostFrames = 24; // of an animation that are rendered

std::intptr_t PLUGIN16_CALL ignoreCommand(HostTaskInfo*, std::uint32_t, std::uintptr_t, std::intptr_t) {
    return 1;
}

BOOL CALLBACK findDialog(HWND window, LPARAM found) {
    *reinterpret_cast<HWND*>(found) = window;
    return GetDlgItem(window, kControlTest) == nullptr;
}

std::vector<Stage> stagesOf(HWND dialog, HostParams* host) {
    std::vector<Stage> stages;
    for (int effect = 0; effect < kEffectCount; ++effect) {
        const EffectDescriptor& descriptor = effectDescriptor(effect);
        if (descriptor.open == nullptr)
            continue;
        const std::shared_ptr<FrameSequence> sequence = descriptor.open(dialog, host);
        const GlobalBlock first = sequence != nullptr ? sequence->renderFinished(0) : GlobalBlock();
        const LockedImage image(first.get());
        if (!image) {
            std::printf("%s cannot be opened\n", descriptor.name);
            continue;
        }
        const int frames = std::min(sequence->frames(), kMostFrames);
        const double pixels = static_cast<double>(image.view().width) * image.view().height;
        stages.push_back({descriptor.name, pixels * frames, 3 * pixels * frames, frames, [sequence, frames] {
                              for (int i = 0; i < frames; ++i)
                                  static_cast<void>(sequence->renderFinished(i));
                          }});
    }
    return stages;
}

HostParams host{};

void CALLBACK measure(HWND, UINT, UINT_PTR timer, DWORD) {
    HWND dialog = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), findDialog, reinterpret_cast<LPARAM>(&dialog));
    if (dialog == nullptr)
        return;
    KillTimer(nullptr, timer);
    printTable("Instruments, to finished frames", stagesOf(dialog, &host));
    PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
}

} // namespace

void benchInstruments() {
    setModuleInstance(GetModuleHandleA(nullptr));
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    host.message = ignoreCommand;
    host.flags = kDelayInHundredths;
    const CurrentFonts fonts;
    SetTimer(nullptr, 0, 1, measure);
    runMainDialog(nullptr, &host);
}

} // namespace veldran::bench
