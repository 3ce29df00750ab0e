// Functions that came with later systems are looked up by name; see the header.
#include "windows/system/screen_scale.h"

#include "windows/window_ids.h"

namespace stage {
namespace {

// Of user32.dll; null where the system has no such function.
template <class Function>
Function userFunction(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
}

// The system's own pseudo handles of this kind.
HANDLE awareness(int number) {
    return reinterpret_cast<HANDLE>(static_cast<INT_PTR>(number));
}
constexpr int kSystemAware = -2;
constexpr int kPerMonitorAware = -4; // second version: frames, menus and common dialogs follow too

int primaryDotsPerInch() {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return dpi;
}

} // namespace

void declarePerMonitorScaling() {
    const auto set = userFunction<BOOL(WINAPI*)(HANDLE)>("SetProcessDpiAwarenessContext");
    if (set == nullptr || !set(awareness(kPerMonitorAware)))
        SetProcessDPIAware();
}

int dotsPerInch(HWND window) {
    static const auto get = userFunction<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
    const int dpi = get == nullptr ? 0 : static_cast<int>(get(window));
    return dpi > 0 ? dpi : primaryDotsPerInch();
}

Font messageFont(int dpi) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    // The system answers in the scaling of the first monitor.
    metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, primaryDotsPerInch());
    return Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

int scrollBarThickness(int dpi) {
    return MulDiv(GetSystemMetrics(SM_CYHSCROLL), dpi, primaryDotsPerInch());
}

SystemScaledDialogs::SystemScaledDialogs() {
    if (const auto set = userFunction<void*(WINAPI*)(HANDLE)>("SetThreadDpiAwarenessContext"))
        previous_ = set(awareness(kSystemAware));
}

SystemScaledDialogs::~SystemScaledDialogs() {
    const auto set = userFunction<void*(WINAPI*)(HANDLE)>("SetThreadDpiAwarenessContext");
    if (previous_ != nullptr && set != nullptr)
        set(previous_);
}

ModernLooks::ModernLooks() {
    ACTCTXW request{};
    request.cbSize = sizeof(request);
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.lpResourceName = MAKEINTRESOURCEW(ID_LOOKS_MANIFEST);
    request.hModule = GetModuleHandleW(nullptr);
    context_ = CreateActCtxW(&request);
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_) != FALSE;
}

ModernLooks::~ModernLooks() {
    if (active_)
        DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE)
        ReleaseActCtx(context_);
}

} // namespace stage
