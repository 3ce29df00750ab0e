// Binds an object to a window: its messages become calls of the object's member `answer`.
// Nothing thrown leaves a window procedure: it becomes a message box.
#pragma once

#include "windows/system/handles.h"

#include <exception>
#include <string>

namespace stage {

// A box with a sign of trouble and an OK button. `owner` may be null.
void showTrouble(HWND owner, const std::string& utf8);
// The same for an exception of any kind.
void showTrouble(HWND owner, const std::exception& exception);

struct WindowRequest {
    const wchar_t* className;
    const wchar_t* title = L"";
    DWORD style = WS_CHILD | WS_VISIBLE;
    DWORD extendedStyle = 0;
    HWND parent = nullptr;
    int id = 0; // of a child window
};

namespace detail {
HWND createWindow(const WindowRequest& request, WNDPROC procedure, void* object);

template <class Object>
LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        void* given = reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(given));
    }
    auto* object = reinterpret_cast<Object*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (object == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    try {
        return object->answer(window, message, wParam, lParam);
    } catch (const std::exception& exception) {
        showTrouble(GetAncestor(window, GA_ROOT), exception);
        return 0;
    }
}
} // namespace detail

// `object` must live as long as the window. Its member is
//     LRESULT answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// Throws Failure(PluginFailed) when the system makes no window.
template <class Object>
HWND createWindowOf(Object& object, const WindowRequest& request) {
    return detail::createWindow(request, detail::windowProcedure<Object>, &object);
}

} // namespace stage
