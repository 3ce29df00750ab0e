// The library's entry and its two exports: thin shells that check what they are given and let nothing escape into the
// host.
#include "abi/plugin_abi.h"
#include "base/windows/memory_reserve.h"
#include "base/windows/module.h"
#include "base/windows/visual_styles.h"
#include "host/windows/message_box.h"
#include "settings/windows/default_paths.h"
#include "settings/windows/settings_store.h"
#include "ui/windows/main_dialog.h"
#include "ui/windows/plugin_fonts.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <string>
#include <string_view>

#include <commctrl.h>
#include <windows.h>

namespace veldran {
namespace {

constexpr std::string_view kName = "Voltane #1";
constexpr std::string_view kCredit = "Voltane #1 animated instruments, drawn and written at Korvel.";
static_assert(kCredit.size() + 1 == sizeof PluginInfo::credit);

constexpr char kHostTooOld[] = "You need a newer version of Tavolin or Merrowin to support this plugin.\n\n"
                               "Please visit the Korvel web page to update your software.";

// Copies a text and its NUL to `offset` of a block of `size` bytes; what does not fit is cut, still terminated.
void putText(unsigned char* block, std::uint32_t size, std::size_t offset, std::string_view text) {
    if (offset >= size)
        return;
    const std::size_t length = std::min<std::size_t>(text.size(), size - offset - 1);
    std::memcpy(block + offset, text.data(), length);
    block[offset + length] = 0;
}

int fillPluginInfo(PluginInfo* info) {
    constexpr std::uint32_t kSmallest = offsetof(PluginInfo, name); // size and version
    if (info == nullptr || info->size < kSmallest)
        return 0;
    const std::uint32_t size = info->size;
    auto* block = reinterpret_cast<unsigned char*>(info);
    std::memset(block, 0, size);
    info->size = size;
    info->version = kPluginInterfaceVersion;
    putText(block, size, offsetof(PluginInfo, name), kName);
    putText(block, size, offsetof(PluginInfo, credit), kCredit);
    return 1;
}

void registerControlClasses() {
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
}

// One invocation at a time, from whatever thread: settings, fonts and the host's message entry are the process's.
class Invocation {
public:
    Invocation() : isOnly_(!isRunning().test_and_set()) {}
    Invocation(const Invocation&) = delete;
    Invocation& operator=(const Invocation&) = delete;
    ~Invocation() {
        if (isOnly_)
            isRunning().clear();
    }
    bool isOnly() const { return isOnly_; }

private:
    static std::atomic_flag& isRunning() {
        static constinit std::atomic_flag flag;
        return flag;
    }

    bool isOnly_;
};

int configureAndBuild(HWND parent, HostParams* params) {
    const Invocation invocation;
    if (params == nullptr || !invocation.isOnly())
        return 0;
    const MemoryReserve reserve;
    if ((params->version >> 8 & 0xFF) < kLowestHostMajorVersion) {
        showMessage(parent, kHostTooOld);
        return 0;
    }
    const VisualStyles looks;
    const CurrentFonts fonts;
    registerControlClasses();
    computePluginFolder();
    fillDefaultPaths(pluginSettings(), params->flags,
                     isShiftHeld() ? DefaultPaths::Everywhere : DefaultPaths::WhereEmpty);
    const bool opened = runMainDialog(parent, params);
    if (parent != nullptr) {
        InvalidateRect(parent, nullptr, TRUE);
        UpdateWindow(parent);
    }
    return opened ? 1 : 0;
}

// For a moment when there may be no memory for a message either.
void tellOfFailure(HWND parent) noexcept {
    try {
        showError(parent, ErrorCode::Memory);
    } catch (...) { // nothing more can be done
    }
}

} // namespace
} // namespace veldran

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH)
        veldran::setModuleInstance(instance);
    return TRUE;
}

int PLUGIN16_CALL PLUGIN16GetPluginParams(PluginInfo* info) {
    return veldran::fillPluginInfo(info);
}

int PLUGIN16_CALL PLUGIN16DoBuild(void* parentWindow, HostParams* params) {
    const HWND parent = static_cast<HWND>(parentWindow);
    try {
        return veldran::configureAndBuild(parent, params);
    } catch (...) {
        veldran::tellOfFailure(parent);
        return 0;
    }
}
}
