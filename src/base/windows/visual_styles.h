// The looks of common controls version 6 for the windows that this module makes, whatever its host wears.
#pragma once

#include <windows.h>

namespace veldran {

// Windows created on this thread during the scope's life get the looks. Where the system cannot give them, windows come
// out in the host's looks; nothing is reported.
class VisualStyles {
public:
    VisualStyles();
    VisualStyles(const VisualStyles&) = delete;
    VisualStyles& operator=(const VisualStyles&) = delete;
    ~VisualStyles();

private:
    HANDLE context_;
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

// Suspends the looks during the scope's life, when windows are made that draw themselves or only show text, and while
// the host's code runs.
class HostLooks {
public:
    HostLooks();
    HostLooks(const HostLooks&) = delete;
    HostLooks& operator=(const HostLooks&) = delete;
    ~HostLooks();

private:
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

} // namespace veldran
