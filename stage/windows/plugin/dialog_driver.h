// Operates the plugin's dialogs in the place of a person: presses the button, reads and answers message boxes, and
// closes what stays open. None of the dialogs is ever seen. Concerns only the thread that makes it; one at a time.
#pragma once

#include "windows/system/handles.h"

#include <string>
#include <vector>

namespace stage {

class DialogDriver {
public:
    // `buildButton` is pressed in the configuration dialog, which is told by having a button `testButton`. Throws
    // Failure(PluginFailed) when the system refuses to watch the thread's windows.
    DialogDriver(int buildButton, int testButton);
    ~DialogDriver();
    DialogDriver(const DialogDriver&) = delete;
    DialogDriver& operator=(const DialogDriver&) = delete;

    // The texts of the message boxes so far, UTF-8.
    const std::vector<std::string>& messages() const { return messages_; }

private:
    static LRESULT CALLBACK windowIsCreated(int code, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK dialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                          DWORD_PTR driver);
    void dialogIsReady(HWND dialog);
    void answerMessageBox(HWND box);

    int buildButton_;
    int testButton_;
    HWND configuration_ = nullptr;
    std::vector<std::string> messages_;
    Hook creationHook_;
};

} // namespace stage
