// Modal dialogs without surprises: nothing is thrown across their procedures, and one that cannot be made says so.
#pragma once

#include "base/windows/memory_reserve.h"
#include "base/windows/module.h"
#include "host/windows/message_box.h"

#include <exception>

#include <windows.h>

namespace veldran {

// What a dialog ends with that could not be set up, and what the system answers when it cannot make one.
inline constexpr INT_PTR kNoDialog = -1;

// The body of a dialog's procedure: what `handle` answers. What runs out of memory is left undone; but half a dialog is
// none, for its OK would store what was never filled in.
template <class Handle>
INT_PTR handleSafely(HWND dialog, UINT message, Handle handle) {
    INT_PTR answer = FALSE;
    try {
        answer = handle();
    } catch (const std::exception&) {
        if (message == WM_INITDIALOG)
            EndDialog(dialog, kNoDialog);
    }
    MemoryReserve::refill();
    return answer;
}

// Runs the dialog of a template and returns what it ended with; kNoDialog after a message to the owner.
inline INT_PTR runDialog(HWND owner, const char* dialogTemplate, DLGPROC procedure, LPARAM parameter) {
    const INT_PTR answer = DialogBoxParamA(moduleInstance(), dialogTemplate, owner, procedure, parameter);
    if (answer == kNoDialog)
        showError(owner, ErrorCode::Memory);
    return answer;
}

} // namespace veldran
