// The hook's window is a child of the file dialog and carries the controls of the preview.
#include "ui/windows/editors/sound_chooser.h"

#include "base/windows/module.h"
#include "host/windows/message_box.h"
#include "resources/resource_ids.h"
#include "settings/settings_table.h"

#include <new>
#include <optional>
#include <utility>

#include <dlgs.h>

namespace veldran {
namespace {

constexpr char kCannotBeRead[] = "This sound cannot be read.";

// The player of an open file dialog.
WavePlayer& playerOf(HWND hook) {
    return *reinterpret_cast<WavePlayer*>(GetWindowLongPtrA(hook, GWLP_USERDATA));
}

// The path that is selected; empty when it is not a file.
std::string selectedFile(HWND hook) {
    char path[kTextLimit + 1] = "";
    const LRESULT length = SendMessageA(GetParent(hook), CDM_GETFILEPATH, sizeof path, reinterpret_cast<LPARAM>(path));
    if (length <= 0 || length > static_cast<LRESULT>(sizeof path))
        return {};
    const DWORD attributes = GetFileAttributesA(path);
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? std::string() : path; // also when there is no such file
}

void stopPreview(HWND hook) {
    playerOf(hook).stop();
    SetDlgItemTextA(hook, SOUND_PREVIEW, "&Preview");
}

void togglePreview(HWND hook) {
    WavePlayer& player = playerOf(hook);
    if (player.isPlaying())
        stopPreview(hook);
    else if (playSoundFile(hook, player, selectedFile(hook)))
        SetDlgItemTextA(hook, SOUND_PREVIEW, "Sto&p");
}

void onPreviewDone(HWND hook, WPARAM device) {
    WavePlayer& player = playerOf(hook);
    if (!player.isDone(reinterpret_cast<HWAVEOUT>(device)))
        return;
    if (IsDlgButtonChecked(hook, SOUND_LOOP) != BST_CHECKED || !player.repeat())
        stopPreview(hook);
}

void onSelectionChanged(HWND hook) {
    stopPreview(hook);
    const std::string path = selectedFile(hook);
    const std::optional<WaveHeader> header = path.empty() ? std::nullopt : readWaveHeader(path);
    std::string status;
    if (header)
        status = waveFigures(header->format, header->dataBytes);
    else if (!path.empty())
        status = kCannotBeRead;
    SetDlgItemTextA(hook, SOUND_STATUS, status.c_str());
    EnableWindow(GetDlgItem(hook, SOUND_PREVIEW), header.has_value());
}

RECT boxIn(HWND hook, HWND window) {
    RECT box{};
    GetWindowRect(window, &box);
    MapWindowPoints(nullptr, hook, reinterpret_cast<POINT*>(&box), 2);
    return box;
}

// Sets the controls under the dialog's file name, and lets the status text reach as far as the buttons beside it.
void alignWithFileName(HWND hook) {
    const HWND dialog = GetParent(hook);
    HWND field = GetDlgItem(dialog, cmb13); // with a history of names
    if (field == nullptr)
        field = GetDlgItem(dialog, edt1);
    const HWND cancel = GetDlgItem(dialog, IDCANCEL);
    if (field == nullptr || cancel == nullptr)
        return;
    RECT client{};
    GetClientRect(dialog, &client);
    const RECT own = boxIn(hook, hook);
    SetWindowPos(hook, nullptr, 0, 0, client.right, own.bottom - own.top, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    const int shift = boxIn(hook, field).left - boxIn(hook, GetDlgItem(hook, SOUND_PREVIEW)).left;
    for (const int control : {SOUND_PREVIEW, SOUND_LOOP, SOUND_STATUS}) {
        const HWND window = GetDlgItem(hook, control);
        const RECT box = boxIn(hook, window);
        const int right = control == SOUND_STATUS ? boxIn(hook, cancel).right : box.right + shift;
        MoveWindow(window, box.left + shift, box.top, right - box.left - shift, box.bottom - box.top, TRUE);
    }
}

void onNotify(HWND hook, UINT code) {
    switch (code) {
    case CDN_INITDONE:
        alignWithFileName(hook);
        onSelectionChanged(hook);
        break;
    case CDN_SELCHANGE:
    case CDN_FOLDERCHANGE:
        onSelectionChanged(hook);
        break;
    case CDN_FILEOK:
        stopPreview(hook);
        break;
    default:
        break;
    }
}

void dispatch(HWND hook, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        SetWindowLongPtrA(hook, GWLP_USERDATA, reinterpret_cast<const OPENFILENAMEA*>(lParam)->lCustData);
        break;
    case WM_NOTIFY:
        onNotify(hook, reinterpret_cast<const NMHDR*>(lParam)->code);
        break;
    case WM_COMMAND:
        if (wParam == MAKEWPARAM(SOUND_PREVIEW, BN_CLICKED))
            togglePreview(hook);
        break;
    case MM_WOM_DONE:
        onPreviewDone(hook, wParam);
        break;
    case WM_DESTROY:
        playerOf(hook).stop();
        break;
    default:
        break;
    }
}

// Nothing is thrown across the window procedure. 0 leaves the message to the file dialog.
UINT_PTR CALLBACK hookProc(HWND hook, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        dispatch(hook, message, wParam, lParam);
    } catch (const std::bad_alloc&) {
    }
    return 0;
}

} // namespace

bool playSoundFile(HWND window, WavePlayer& player, const std::string& path) {
    WaveSound sound = readWaveFile(path);
    if (!sound) {
        showMessage(window, kCannotBeRead);
        return false;
    }
    if (!player.play(window, std::move(sound))) {
        showMessage(window, "This sound cannot be played.");
        return false;
    }
    return true;
}

bool openSoundFile(OPENFILENAMEA choice) {
    WavePlayer player;
    choice.Flags |= OFN_ENABLETEMPLATE | OFN_ENABLEHOOK;
    choice.hInstance = moduleInstance();
    choice.lpTemplateName = MAKEINTRESOURCEA(DIALOG_SOUND_CHOOSER);
    choice.lpfnHook = hookProc;
    choice.lCustData = reinterpret_cast<LPARAM>(&player);
    return GetOpenFileNameA(&choice) != FALSE;
}

} // namespace veldran
