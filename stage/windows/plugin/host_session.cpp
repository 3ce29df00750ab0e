// The message entry and its commands; see the header.
#include "windows/plugin/host_session.h"

#include "base/failure.h"
#include "document/packed_bitmap.h"
#include "windows/plugin/image_loader.h"
#include "windows/system/handles.h"
#include "windows/system/wide_text.h"

#include <shellapi.h>
#include <shlwapi.h>

namespace stage {
namespace {

Rgb rgbOf(std::intptr_t colour) { // 0x00BBGGRR
    return {static_cast<std::uint8_t>(colour), static_cast<std::uint8_t>(colour >> 8),
            static_cast<std::uint8_t>(colour >> 16)};
}

constexpr std::uint32_t kNoTransparentIndex = 0xFFFFFFFF;
constexpr std::string_view kDeltaStatus = "Supercompressing";

HostSession* activeSession = nullptr;

template <class T>
const T& recordAt(std::intptr_t lParam) {
    const auto* record = reinterpret_cast<const T*>(lParam);
    if (record == nullptr || record->size != sizeof(T))
        throw Failure(ExitCode::PluginFailed, "The plugin passed a record of a wrong size.");
    return *record;
}

std::string textAt(std::intptr_t lParam) {
    const auto* text = reinterpret_cast<const char*>(lParam);
    return text == nullptr ? std::string() : std::string(text);
}

Frame copyFrame(const HostImageInfo& image) {
    const SIZE_T size = GlobalSize(image.image);
    const LockedBlock locked(image.image);
    if (locked.bytes() == nullptr)
        throw Failure(ExitCode::PluginFailed, "The plugin delivered a frame that cannot be read.");
    return unpackBitmap({static_cast<const std::byte*>(locked.bytes()), size},
                        image.alpha != 0 ? OpacityByte::Used : OpacityByte::Unused);
}

} // namespace

HostSession::HostSession(AnimationRecorder& recorder, HostEvents events, std::filesystem::path helpFolder)
    : recorder_(recorder), events_(std::move(events)), helpFolder_(std::move(helpFolder)) {
    activeSession = this;
}

HostSession::~HostSession() {
    activeSession = nullptr;
}

HostParams HostSession::parametersFor(OutputFormat format) const {
    HostParams params{};
    params.size = sizeof(params);
    params.version = kPluginInterfaceVersion;
    params.message = entry;
    params.flags = format == OutputFormat::Gif ? kDelayInHundredths : kHostIsPngEditor;
    return params;
}

void HostSession::rethrowFailure() const {
    if (failure_)
        std::rethrow_exception(failure_);
}

bool HostSession::isFinished(BuildButton button) const {
    return succeeded_ && taskCommand_ == (button == BuildButton::Test ? kHostCreateTestTask : kHostCreateTask);
}

std::intptr_t PLUGIN16_CALL HostSession::entry(HostTaskInfo*, std::uint32_t command, std::uintptr_t wParam,
                                               std::intptr_t lParam) {
    if (activeSession == nullptr)
        return 0;
    try {
        return activeSession->answer(command, wParam, lParam);
    } catch (...) {
        if (!activeSession->failure_)
            activeSession->failure_ = std::current_exception();
        return 0;
    }
}

std::intptr_t HostSession::answer(std::uint32_t command, std::uintptr_t wParam, std::intptr_t lParam) {
    switch (command) {
    case kHostCreateTask:
    case kHostCreateTestTask:
        createTask(recordAt<HostTaskInfo>(lParam));
        taskCommand_ = command;
        return 1;
    case kHostAddImage:
        addImage(recordAt<HostImageInfo>(lParam));
        return 1;
    case kHostAddComment:
        recorder_.addComment(textAt(lParam));
        return 1;
    case kHostFinishTask:
        finishTask(wParam == 1);
        return 1;
    case kHostLoadImage:
        return reinterpret_cast<std::intptr_t>(loadImage(wideFromSystem(textAt(lParam))).detach());
    case kHostShowHelp:
        return showHelp(helpFolder_, wideFromSystem(textAt(lParam))) ? 1 : 0;
    case kHostShowStatus:
        showStatus(textAt(lParam));
        return 1;
    case kHostShowProgress:
        if (events_.progress)
            events_.progress(wParam, static_cast<std::uint64_t>(lParam));
        return 1;
    case kHostSetBackground:
        if (wParam == kBackgroundByIndex)
            recorder_.setBackgroundIndex(static_cast<std::uintptr_t>(lParam));
        else if (wParam == kBackgroundByColour)
            recorder_.setBackgroundColour(rgbOf(lParam));
        return 1;
    case kHostBuildBegins:
        beginBuild();
        return 1;
    default:
        return 0;
    }
}

void HostSession::createTask(const HostTaskInfo& task) {
    AnimationInfo info;
    info.width = task.width;
    info.height = task.height;
    info.bitsPerPixel = task.bitsPerPixel;
    info.frameCount = task.frameCount;
    for (std::size_t i = 0; i < info.palette.size(); ++i)
        info.palette[i] = {task.palette[i][0], task.palette[i][1], task.palette[i][2]};
    recorder_.begin(info);
}

void HostSession::addImage(const HostImageInfo& image) {
    Frame frame = copyFrame(image);
    frame.delay = image.delay;
    if (frame.format == PixelFormat::Indexed && image.transparentIndex != kNoTransparentIndex) {
        if (image.transparentIndex > 255)
            throw Failure(ExitCode::PluginFailed, "The plugin delivered a transparent index outside the palette.");
        frame.transparentIndex = static_cast<std::uint8_t>(image.transparentIndex);
    }
    recorder_.addFrame(std::move(frame));
}

void HostSession::showStatus(const std::string& text) {
    if (text == kDeltaStatus)
        recorder_.announceDeltas();
    if (events_.status)
        events_.status(utf8FromSystem(text));
}

void HostSession::beginBuild() {
    failure_ = nullptr;
    taskCommand_ = 0;
    succeeded_ = false;
    if (events_.begins)
        events_.begins();
}

void HostSession::finishTask(bool succeeded) {
    succeeded_ = succeeded;
    if (events_.finished)
        events_.finished(taskCommand_ == kHostCreateTestTask ? BuildButton::Test : BuildButton::Build, succeeded);
}

bool showHelp(const std::filesystem::path& folder, const std::wstring& documentAndTopic) {
    const std::size_t topic = std::min(documentAndTopic.find(L'#'), documentAndTopic.size());
    const std::filesystem::path document = documentAndTopic.substr(0, topic);
    std::error_code ignored;
    if (document != document.filename() || !std::filesystem::is_regular_file(folder / document, ignored))
        return false;
    wchar_t address[2084]; // the longest address that the shell handles
    DWORD length = static_cast<DWORD>(std::size(address));
    if (FAILED(UrlCreateFromPathW((folder / document).c_str(), address, &length, 0)))
        return false;
    const std::wstring whole = address + documentAndTopic.substr(topic);
    // Above 32 the shell has started something.
    return reinterpret_cast<std::intptr_t>(
               ShellExecuteW(nullptr, L"open", whole.c_str(), nullptr, nullptr, SW_SHOWNORMAL)) > 32;
}

} // namespace stage
