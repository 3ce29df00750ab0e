// The last filter for exceptions of the system. It may find any memory damaged: it prints and ends, nothing else.
#include "windows/plugin/crash_report.h"

#include "base/failure.h"

#include <windows.h>

#include <cstdio>

namespace stage {
namespace {

CrashReport reportIn = CrashReport::StandardError;

// The letters behind the last backslash.
const char* fileName(const char* path) {
    const char* name = path;
    for (; *path != 0; ++path)
        if (*path == '\\')
            name = path + 1;
    return name;
}

LONG WINAPI endProcess(EXCEPTION_POINTERS* exception) {
    char path[MAX_PATH] = "";
    HMODULE module = nullptr;
    if (GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           static_cast<const char*>(exception->ExceptionRecord->ExceptionAddress), &module))
        GetModuleFileNameA(module, path, MAX_PATH);
    char text[MAX_PATH + 64];
    const int length =
        std::snprintf(text, sizeof(text), "stage: \"%s\" crashed (exception %08lX).\n",
                      module == nullptr ? "unknown code" : fileName(path), exception->ExceptionRecord->ExceptionCode);
    DWORD written = 0;
    if (reportIn == CrashReport::Box)
        MessageBoxA(nullptr, text, "Stage", MB_OK | MB_ICONERROR);
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(length), &written, nullptr);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(ExitCode::PluginFailed));
    return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

void reportCrashes(CrashReport report) {
    reportIn = report;
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(endProcess);
}

} // namespace stage
