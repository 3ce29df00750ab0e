// Opens the host's window and writes a picture of it in each of the states that a person meets, at two scalings:
// window_screenshots FOLDER RADAR QUICK. RADAR is an animation that the plugin made, QUICK one that browsers slow down.
#include "windows/main_window/main_window.h"
#include "windows/system/screen_scale.h"
#include "windows/window_ids.h"

#include "photograph.h"

#include <cstdio>
#include <string>
#include <vector>

using namespace stage;

namespace {

constexpr int kScalings[] = {96, 144}; // dots per inch
constexpr int kWidth = 900;            // at 96 dots per inch
constexpr int kHeight = 640;
constexpr DWORD kPause = 500; // milliseconds until everything has painted itself

std::string folder;
MainWindow* shown = nullptr;
std::string menuName; // of the picture that is taken while a menu or dialog is open

void pump(DWORD milliseconds) {
    const ULONGLONG end = GetTickCount64() + milliseconds;
    while (GetTickCount64() < end) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            shown->dispatch(message);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

void take(const std::string& name) {
    pump(kPause);
    screenshots::photograph(shown->window(), folder + "/stage-" + name + ".bmp");
}

void command(int id) {
    SendMessageW(shown->window(), WM_COMMAND, static_cast<WPARAM>(id), 0);
}

// Menus and dialogs have loops of their own.
void CALLBACK takeOpen(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    screenshots::photograph(shown->window(), folder + "/stage-" + menuName + ".bmp");
    EndMenu();
    const HWND dialog = GetLastActivePopup(shown->window());
    if (dialog != shown->window())
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

template <class Open>
void takeWhile(const std::string& name, Open open) {
    pump(kPause); // what closed the last one
    menuName = name;
    SetTimer(nullptr, 0, kPause, takeOpen);
    open();
}

void takeAll(const std::string& scaling, const wchar_t* radar, const wchar_t* quick) {
    take("empty-" + scaling);
    shown->open(radar);
    command(ID_PLAY);
    for (int i = 0; i < 20; ++i)
        command(ID_STEP_FORWARD);
    take("opened-" + scaling);
    int number = 0;
    for (const wchar_t key : std::wstring(L"fevph"))
        takeWhile("menu-" + std::to_string(++number) + "-" + scaling,
                  [&] { SendMessageW(shown->window(), WM_SYSCOMMAND, SC_KEYMENU, key); });
    takeWhile("file-options-" + scaling, [] { command(ID_FILE_OPTIONS); });
    command(ID_BACKDROP_WHITE);
    command(ID_ZOOM_FIT);
    command(ID_PLAY);
    take("playing-" + scaling);
    shown->open(quick);
    take("warning-" + scaling);
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: window_screenshots FOLDER RADAR QUICK\n");
        return 2;
    }
    folder = std::filesystem::path(argv[1]).string();
    declarePerMonitorScaling();
    for (const int dpi : kScalings) {
        MainWindow window(L"veldran1_x64.dll");
        shown = &window;
        const RECT place{0, 0, MulDiv(kWidth, dpi, 96), MulDiv(kHeight, dpi, 96)};
        SendMessageW(window.window(), WM_DPICHANGED, static_cast<WPARAM>(MAKELONG(dpi, dpi)),
                     reinterpret_cast<LPARAM>(&place));
        window.show();
        takeAll(std::to_string(MulDiv(100, dpi, 96)), argv[2], argv[3]);
        shown = nullptr;
    }
    return 0;
}
