// Monitors of different scaling: how large things are drawn, and what older systems lack of it.
// The command line never calls any of this: a render must not depend on a monitor.
#pragma once

#include "windows/system/handles.h"

namespace stage {

// To be called before the first window is made: windows are told when they come to a monitor of another scaling. On
// systems without that, they keep the scaling of the first monitor.
void declarePerMonitorScaling();

// Dots per inch of the monitor that the window is on; 96 is 100 %.
int dotsPerInch(HWND window);

// A length of 96 dots per inch, rounded.
inline int scaled(int length, int dpi) {
    return MulDiv(length, dpi, 96);
}

// What the system uses for menus, messages and status lines.
Font messageFont(int dpi);
int scrollBarThickness(int dpi);

// Windows that are made on this thread during the scope's life, and their owners' other windows, are scaled by the
// system when they are moved to another monitor. For dialogs that do not do it themselves.
class SystemScaledDialogs {
public:
    SystemScaledDialogs();
    ~SystemScaledDialogs();
    SystemScaledDialogs(const SystemScaledDialogs&) = delete;
    SystemScaledDialogs& operator=(const SystemScaledDialogs&) = delete;

private:
    void* previous_ = nullptr;
};

// Controls that are made on this thread during the scope's life get the looks of common controls version 6. Not chosen
// for the whole program: the plugin's dialog, which chooses for itself, opens more slowly then.
class ModernLooks {
public:
    ModernLooks();
    ~ModernLooks();
    ModernLooks(const ModernLooks&) = delete;
    ModernLooks& operator=(const ModernLooks&) = delete;

private:
    HANDLE context_;
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

} // namespace stage
