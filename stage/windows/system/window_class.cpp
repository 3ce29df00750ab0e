// Classes are registered when their first window is made; see the header.
#include "windows/system/window_class.h"

#include "base/failure.h"
#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"

#include <new>

namespace stage {

void showTrouble(HWND owner, const std::string& utf8) {
    const ModernLooks looks;
    MessageBoxW(owner, wideFromUtf8(utf8).c_str(), L"Stage", MB_OK | MB_ICONWARNING);
}

void showTrouble(HWND owner, const std::exception& exception) {
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&exception) != nullptr;
    showTrouble(owner, isMemory ? "There is not enough memory." : exception.what());
}

HWND detail::createWindow(const WindowRequest& request, WNDPROC procedure, void* object) {
    const HINSTANCE program = GetModuleHandleW(nullptr);
    WNDCLASSEXW known{};
    known.cbSize = sizeof(known);
    if (!GetClassInfoExW(program, request.className, &known)) {
        WNDCLASSEXW windowClass{};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.style = CS_DBLCLKS;
        windowClass.lpfnWndProc = procedure;
        windowClass.hInstance = program;
        windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // IDC_ARROW
        windowClass.lpszClassName = request.className;
        RegisterClassExW(&windowClass);
    }
    const bool isChild = (request.style & WS_CHILD) != 0;
    const int place = isChild ? 0 : CW_USEDEFAULT;
    const HWND window = CreateWindowExW(
        request.extendedStyle, request.className, request.title, request.style, place, place, place, place,
        request.parent, isChild ? reinterpret_cast<HMENU>(static_cast<INT_PTR>(request.id)) : nullptr, program, object);
    if (window == nullptr)
        throw Failure(ExitCode::PluginFailed, "The system makes no window.");
    return window;
}

} // namespace stage
