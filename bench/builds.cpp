// What a build takes with the first settings of an instrument, from the host's call to the written GIF: the shipped
// plugin driven by stage's own code. What the plugin does between two words to its host, and how long its preview
// takes, is measured with its parts linked in.
#include "bench.h"

#include "abi/plugin_abi.h"
#include "base/output_file.h"
#include "base/windows/module.h"
#include "instruments/effect_list.h"
#include "instruments/windows/frame_loop.h"
#include "settings/output_options.h"
#include "ui/windows/main_dialog.h"
#include "ui/windows/plugin_fonts.h"
#include "windows/plugin/render.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>

#include <commctrl.h>

// The linker leads calls of resampleArea here (-Wl,--wrap), so that the time it takes can be told apart.
#define RESAMPLE _ZN7veldran12resampleAreaERKNS_14BasicImageViewIKhEERKNS0_IhEE
#define JOINED(a, b) a##b
#define WITH_PREFIX(prefix, name) JOINED(prefix, name)
extern "C" {
void WITH_PREFIX(__real_, RESAMPLE)(const veldran::ConstImageView& source, const veldran::ImageView& target);
void WITH_PREFIX(__wrap_, RESAMPLE)(const veldran::ConstImageView& source, const veldran::ImageView& target);
}

namespace veldran::bench {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr int kRuns = 3;
constexpr int kMostFrames = 24; // of an animation, to see how much of the time is scaling

double now() {
    return Seconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double scalingSeconds = 0;

// What can be told of an instrument with its parts linked in.
struct Insides {
    int effect = 0;
    double scalingPerFrame = 0; // s
    double preview = 0;         // s, from opening to the finished still picture
};
Insides insides;

HostParams host{};

std::intptr_t PLUGIN16_CALL ignoreCommand(HostTaskInfo*, std::uint32_t, std::uintptr_t, std::intptr_t) {
    return 1;
}

BOOL CALLBACK findDialog(HWND window, LPARAM found) {
    *reinterpret_cast<HWND*>(found) = window;
    return GetDlgItem(window, kControlTest) == nullptr;
}

double previewSeconds(const EffectDescriptor& effect, HWND dialog) {
    const double start = now();
    const std::unique_ptr<FrameSequence> sequence = effect.open(dialog, &host);
    const GlobalBlock still = sequence != nullptr ? sequence->renderStill() : GlobalBlock();
    return now() - start;
}

void measureInsides(HWND dialog) {
    const EffectDescriptor& effect = effectDescriptor(insides.effect);
    double previews[kRuns];
    for (double& preview : previews)
        preview = previewSeconds(effect, dialog);
    std::ranges::sort(previews);
    insides.preview = previews[kRuns / 2];

    const std::unique_ptr<FrameSequence> sequence = effect.open(dialog, &host);
    const int frames = sequence != nullptr ? std::min(sequence->frames(), kMostFrames) : 0;
    scalingSeconds = 0;
    for (int i = 0; i < frames; ++i)
        static_cast<void>(sequence->renderFinished(i));
    insides.scalingPerFrame = frames > 0 ? scalingSeconds / frames : 0;
}

void CALLBACK onTick(HWND, UINT, UINT_PTR timer, DWORD) {
    HWND dialog = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), findDialog, reinterpret_cast<LPARAM>(&dialog));
    if (dialog == nullptr)
        return;
    KillTimer(nullptr, timer);
    measureInsides(dialog);
    PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
}

// The main dialog is opened for its controls, which hold an instrument's parameters, and closed again.
void lookInside(int effect) {
    insides = {effect};
    setModuleInstance(GetModuleHandleA(nullptr));
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    host.message = ignoreCommand;
    host.flags = kDelayInHundredths;
    const CurrentFonts fonts;
    SetTimer(nullptr, 0, 1, onTick);
    runMainDialog(nullptr, &host);
}

double secondsOf(const stage::RenderReport& report, std::string_view stageName) {
    const auto found = std::ranges::find(report.stages, stageName, &stage::StageTime::name);
    return found == report.stages.end() ? 0 : found->seconds;
}

} // namespace

void benchBuild(int effect) {
    const stage::PluginLibrary plugin = stage::PluginLibrary::load(stage::programFolder() / "veldran1_x64.dll");
    stage::RenderOptions options;
    options.effect = std::to_string(effect);
    options.outputs = {
        {stage::OutputFormat::Gif, stage::utf8FromPath(std::filesystem::temp_directory_path()) + "/veldran-bench.gif"}};
    std::vector<stage::RenderReport> reports;
    reports.reserve(kRuns);
    for (int i = 0; i < kRuns; ++i)
        reports.push_back(stage::render(plugin, options));
    std::filesystem::remove(options.outputs[0].file.value());
    std::ranges::sort(reports, {}, &stage::RenderReport::secondsTaken);
    const stage::RenderReport& report = reports[kRuns / 2];

    lookInside(effect);
    const double perFrame = 1000.0 / static_cast<double>(report.frames);
    const double scaling = insides.scalingPerFrame * 1000;
    const double building = secondsOf(report, "Building") * perFrame;
    const double dialog = secondsOf(report, "Opening") + secondsOf(report, "Closing");
    std::printf("%-30s %6zu %8.2f %8.2f %8.2f %8.2f %8.2f %8.0f %8.0f %8.0f %7.1f %8.1f\n", report.effect.c_str(),
                report.frames, std::max(building - scaling, 0.0), scaling, secondsOf(report, "Quantizing") * perFrame,
                secondsOf(report, "Remapping") * perFrame, secondsOf(report, "Writing GIF") * perFrame, dialog * 1000,
                (report.secondsTaken - dialog) * 1000, report.secondsTaken * 1000,
                static_cast<double>(report.peakMemory) / 1e6, insides.preview * 1000);
}

void printBuildHeader() {
    std::printf("Builds with the first settings: ms per frame; ms; MB at most; ms. Medians of %d by the clock.\n",
                kRuns);
    std::printf("%-30s %6s %8s %8s %8s %8s %8s %8s %8s %8s %7s %8s\n", "", "frames", "render", "scale", "quantize",
                "remap", "write", "dialog", "build", "whole", "memory", "preview");
}

} // namespace veldran::bench

void WITH_PREFIX(__wrap_, RESAMPLE)(const veldran::ConstImageView& source, const veldran::ImageView& target) {
    const double start = veldran::bench::now();
    WITH_PREFIX(__real_, RESAMPLE)(source, target);
    veldran::bench::scalingSeconds += veldran::bench::now() - start;
}
