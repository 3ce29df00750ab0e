// The cursor that says: wait.
#pragma once

#include <windows.h>

namespace veldran {

// Shown for the scope's life; then the cursor is what it was.
class WaitCursor {
public:
    WaitCursor() : previous_(SetCursor(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT)))) {}
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    ~WaitCursor() { SetCursor(previous_); }

private:
    HCURSOR previous_;
};

} // namespace veldran
