// The host's side of the conversation with the plugin: answers its commands and passes the animation to the recorder.
// Nothing thrown leaves the message entry: the first failure is kept, and the plugin gets the answer 0.
#pragma once

#include "core/animation_recorder.h"
#include "core/arguments.h"
#include "core/report.h"
#include "host/plugin_abi.h"

#include <exception>
#include <filesystem>

namespace stage {

// Sends a text to where the person sees the progress.
using ProgressPrinter = void (*)(const std::string& text);

class HostSession {
public:
    // One at a time, because the message entry has no argument of its own. `helpFolder` holds the help document.
    HostSession(AnimationRecorder& recorder, ProgressText& progress, ProgressPrinter printer,
                std::filesystem::path helpFolder);
    ~HostSession();
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    // What the plugin gets for a host of this kind.
    HostParams parametersFor(OutputFormat format) const;

    // Throws the first failure that a command met, if there was one.
    void rethrowFailure() const;
    // Whether the animation was begun by the button's own command and finished with success.
    bool isFinished(BuildButton button) const;

private:
    static std::intptr_t PLUGIN16_CALL entry(HostTaskInfo* task, std::uint32_t command, std::uintptr_t wParam,
                                             std::intptr_t lParam);
    std::intptr_t answer(std::uint32_t command, std::uintptr_t wParam, std::intptr_t lParam);
    void createTask(const HostTaskInfo& task);
    void addImage(const HostImageInfo& image);
    void showStatus(const std::string& text);
    bool showHelp(const std::string& documentAndTopic) const;

    AnimationRecorder& recorder_;
    ProgressText& progress_;
    ProgressPrinter printer_;
    std::filesystem::path helpFolder_;
    std::exception_ptr failure_;
    std::uint32_t taskCommand_ = 0; // the command that began the animation; 0 before
    bool succeeded_ = false;
};

} // namespace stage
