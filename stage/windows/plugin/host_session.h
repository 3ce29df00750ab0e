// The host's side of the conversation with the plugin: answers its commands and passes the animation to the recorder.
// Nothing thrown leaves the message entry: the first failure is kept, and the plugin gets the answer 0.
#pragma once

#include "abi/plugin_abi.h"
#include "commands/arguments.h"
#include "document/animation_recorder.h"

#include <exception>
#include <filesystem>
#include <functional>

namespace stage {

// What the session tells of a build; each may be empty. What they throw counts as a failure of the command.
struct HostEvents {
    std::function<void()> begins;                                          // a build or a test build
    std::function<void(const std::string& utf8)> status;                   // the stage of the build
    std::function<void(std::uint64_t done, std::uint64_t total)> progress; // of that stage; (0, 0): nothing to show
    std::function<void(BuildButton button, bool succeeded)> finished;      // the recorder has all that there is
};

class HostSession {
public:
    // One at a time, because the message entry has no argument of its own. `helpFolder` holds the help document.
    HostSession(AnimationRecorder& recorder, HostEvents events, std::filesystem::path helpFolder);
    ~HostSession();
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    // What the plugin gets for a host of this kind.
    HostParams parametersFor(OutputFormat format) const;

    // Throws the first failure that a command of the last build met, if there was one.
    void rethrowFailure() const;
    // Whether the animation was begun by the button's own command and finished with success.
    bool isFinished(BuildButton button) const;

private:
    static std::intptr_t PLUGIN16_CALL entry(HostTaskInfo* task, std::uint32_t command, std::uintptr_t wParam,
                                             std::intptr_t lParam);
    std::intptr_t answer(std::uint32_t command, std::uintptr_t wParam, std::intptr_t lParam);
    void createTask(const HostTaskInfo& task);
    void addImage(const HostImageInfo& image);
    void beginBuild();
    void finishTask(bool succeeded);
    void showStatus(const std::string& text);
    AnimationRecorder& recorder_;
    HostEvents events_;
    std::filesystem::path helpFolder_;
    std::exception_ptr failure_;
    std::uint32_t taskCommand_ = 0; // the command that began the animation; 0 before
    bool succeeded_ = false;
};

// Shows the help document, which must stand in the folder itself: a path would let the plugin start any program. A "#"
// and a topic may follow its name. False when it is missing or the system has no program for it.
bool showHelp(const std::filesystem::path& folder, const std::wstring& documentAndTopic);

} // namespace stage
