// Sending commands to the host: the one place that calls its message entry.
#pragma once

#include "abi/plugin_abi.h"
#include "base/windows/visual_styles.h"

namespace veldran {

// The host's answer; 0 when there is no host or it has no message entry.
inline std::intptr_t sendToHost(const HostParams* host, HostTaskInfo* task, HostCommand command, std::uintptr_t wParam,
                                std::intptr_t lParam) {
    if (host == nullptr || host->message == nullptr)
        return 0;
    const HostLooks looks; // for the windows that the host may open
    return host->message(task, command, wParam, lParam);
}

inline void showProgress(const HostParams* host, int current, int total) {
    sendToHost(host, nullptr, kHostShowProgress, static_cast<std::uintptr_t>(current), total);
}

inline void clearProgress(const HostParams* host) {
    showProgress(host, 0, 0);
}

inline void showStatus(const HostParams* host, const char* text) {
    sendToHost(host, nullptr, kHostShowStatus, 0, reinterpret_cast<std::intptr_t>(text));
}

} // namespace veldran
