// The dots on the button are drawn as squares: not every code page has an ellipsis.
#include "ui/windows/controls/path_control.h"

#include "base/windows/gdi.h"
#include "host/windows/message_box.h"
#include "settings/settings_table.h"
#include "sound/windows/wave_player.h"
#include "ui/windows/controls/control_edge.h"
#include "ui/windows/editors/sound_chooser.h"
#include "ui/windows/text_scale.h"

#include <algorithm>
#include <string>
#include <utility>

#include <commdlg.h>

#include <cderr.h>

namespace veldran {
namespace {

constexpr int kDotsButtonWidth = 20;
constexpr int kDotSide = 2;
constexpr int kTextInset = 3;

// What plays, and the button that stops it.
struct PlayingSound {
    WavePlayer player;
    HWND button = nullptr;
    std::string buttonText; // before it read "Stop"
};

PlayingSound playing;

std::string textOf(HWND control) {
    char text[kTextLimit + 1] = "";
    GetWindowTextA(control, text, static_cast<int>(sizeof text));
    return text;
}

// Where the name begins; everything when there is no folder.
std::size_t nameStart(const std::string& path) {
    const std::size_t separator = path.find_last_of("\\/:");
    return separator == std::string::npos ? 0 : separator + 1;
}

void drawDots(HDC dc, const RECT& button, COLORREF colour, int shift) {
    const Brush brush(CreateSolidBrush(colour));
    const int side = scaled(kDotSide);
    const int left = (button.left + button.right - 5 * side) / 2 + shift; // three dots, two gaps
    const int top = (button.top + button.bottom - side) / 2 + shift;
    for (const int dot : {0, 1, 2}) {
        const RECT square{left + 2 * dot * side, top, left + (2 * dot + 1) * side, top + side};
        FillRect(dc, &square, brush.get());
    }
}

void drawDotsButton(const DRAWITEMSTRUCT& item, RECT button) {
    const bool pressed = (item.itemState & ODS_SELECTED) != 0;
    const bool disabled = (item.itemState & ODS_DISABLED) != 0;
    FillRect(item.hDC, &button, GetSysColorBrush(COLOR_3DSHADOW));
    button.left += scaled(1); // the line between name and button
    FillRect(item.hDC, &button, GetSysColorBrush(pressed ? COLOR_3DLIGHT : COLOR_BTNFACE));
    drawDots(item.hDC, button, GetSysColor(disabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT), pressed ? 1 : 0);
}

void drawFileName(const DRAWITEMSTRUCT& item, RECT box) {
    const std::string path = textOf(item.hwndItem);
    const bool grey = path.empty() || (item.itemState & ODS_DISABLED) != 0;
    const std::string name = path.empty() ? "(none)" : path.substr(nameStart(path));
    const Selected font(item.hDC, reinterpret_cast<HGDIOBJ>(SendMessageA(item.hwndItem, WM_GETFONT, 0, 0)));
    const TextStyle style(item.hDC, GetSysColor(grey ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT));
    DrawTextA(item.hDC, name.c_str(), -1, &box, DT_SINGLELINE | DT_VCENTER | DT_LEFT | DT_NOPREFIX | DT_END_ELLIPSIS);
}

// What the file dialog offers of a kind of file.
struct Filter {
    const char* title;
    const char* patterns;  // pairs of name and patterns, each ended by NUL
    const char* extension; // of a name that is typed without one
};

Filter filterFor(PathKind kind) {
    switch (kind) {
    case PathKind::Sound:
        return {"Choose a Sound", "WAV files\0*.wav\0", "wav"};
    case PathKind::Text:
        return {"Choose a Text", "Text files\0*.txt\0All files\0*.*\0", "txt"};
    default:
        return {"Choose an Image", "Image files\0*.bmp;*.gif;*.jpg;*.jpeg;*.png;*.tif;*.tiff\0All files\0*.*\0",
                nullptr};
    }
}

bool runFileDialog(const OPENFILENAMEA& choice, PathKind kind) {
    OPENFILENAMEA plain = choice;
    return kind == PathKind::Sound ? openSoundFile(choice) : GetOpenFileNameA(&plain) != FALSE;
}

// Lets the person choose a file, beginning at `path`; the new path, or nothing.
std::string chooseFile(HWND dialog, PathKind kind, const std::string& path) {
    char file[kTextLimit + 1] = "";
    const std::size_t start = nameStart(path);
    path.copy(file, kTextLimit, start);
    const std::string folder = path.substr(0, start);
    const Filter filter = filterFor(kind);
    OPENFILENAMEA choice{};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = dialog;
    choice.lpstrFilter = filter.patterns;
    choice.lpstrFile = file;
    choice.nMaxFile = sizeof file;
    choice.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    choice.lpstrTitle = filter.title;
    choice.lpstrDefExt = filter.extension;
    choice.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    bool chosen = runFileDialog(choice, kind);
    if (!chosen && CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
        file[0] = '\0'; // the name that stands in the control is none: without it the dialog opens
        chosen = runFileDialog(choice, kind);
    }
    return chosen ? file : "";
}

} // namespace

void drawPathControl(const DRAWITEMSTRUCT& item) {
    const bool disabled = (item.itemState & ODS_DISABLED) != 0;
    RECT box = drawControlEdge(item.hDC, item.rcItem, false, disabled ? COLOR_BTNFACE : COLOR_WINDOW);
    RECT button = box;
    button.left = std::max<LONG>(box.left, box.right - scaled(kDotsButtonWidth));
    box.right = button.left;
    drawDotsButton(item, button);
    if ((item.itemState & ODS_FOCUS) != 0 && (item.itemState & ODS_NOFOCUSRECT) == 0) {
        RECT focus = box;
        InflateRect(&focus, -1, -1);
        DrawFocusRect(item.hDC, &focus);
    }
    InflateRect(&box, -scaled(kTextInset), 0);
    drawFileName(item, box);
}

bool choosePath(HWND dialog, int controlId, PathKind kind) {
    stopSounds();
    const HWND control = GetDlgItem(dialog, controlId);
    const std::string before = textOf(control);
    const std::string chosen = chooseFile(dialog, kind, before);
    if (chosen.empty() || chosen == before)
        return false;
    SetWindowTextA(control, chosen.c_str());
    InvalidateRect(control, nullptr, TRUE);
    return true;
}

void showSoundInformation(HWND dialog, int controlId) {
    const std::string path = textOf(GetDlgItem(dialog, controlId));
    const WaveSound sound = readWaveFile(path);
    const LockedBlock locked(sound.block.get());
    if (!locked) {
        showError(dialog, ErrorCode::Memory);
        return;
    }
    const auto& format = *reinterpret_cast<const WaveFormat*>(locked.data());
    const std::string text = waveSummary(path.substr(nameStart(path)), format, sound.dataBytes);
    MessageBoxA(dialog, text.c_str(), " ", MB_OK);
}

void toggleSound(HWND dialog, int pathControlId, int playButtonId) {
    const HWND button = GetDlgItem(dialog, playButtonId);
    const bool stopOnly = playing.player.isPlaying() && playing.button == button;
    stopSounds();
    if (stopOnly || !playSoundFile(dialog, playing.player, textOf(GetDlgItem(dialog, pathControlId))))
        return;
    playing.button = button;
    playing.buttonText = textOf(button);
    SetWindowTextA(button, "Stop");
}

void stopSounds() {
    if (!playing.player.isPlaying())
        return;
    playing.player.stop();
    SetWindowTextA(std::exchange(playing.button, nullptr), playing.buttonText.c_str());
}

bool onSoundDone(HWND dialog, WPARAM device) {
    if (GetParent(playing.button) != dialog || !playing.player.isDone(reinterpret_cast<HWAVEOUT>(device)))
        return false;
    stopSounds();
    return true;
}

} // namespace veldran
