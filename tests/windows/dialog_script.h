// Driving a modal dialog from a timer inside its own loop, and judging its layout.
#pragma once

#include <algorithm>
#include <cctype>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <commctrl.h>
#include <windows.h>

namespace dialog_script {

using Script = std::function<void(HWND dialog)>;

// In capitals.
inline std::string classOf(HWND window) {
    char name[16] = "";
    GetClassNameA(window, name, static_cast<int>(sizeof name));
    CharUpperA(name);
    return name;
}

namespace detail {

inline const Script* script = nullptr;

inline BOOL CALLBACK findDialog(HWND window, LPARAM found) {
    if (classOf(window) != "#32770")
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

inline void CALLBACK runScript(HWND, UINT, UINT_PTR timer, DWORD) {
    HWND dialog = nullptr; // the topmost
    EnumThreadWindows(GetCurrentThreadId(), findDialog, reinterpret_cast<LPARAM>(&dialog));
    if (dialog == nullptr)
        return;
    KillTimer(nullptr, timer);
    (*script)(dialog);
    PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0); // not received once the script has closed the dialog
}

} // namespace detail

// Runs `script` in the dialog that `open` shows and cancels it afterwards, if it is still there. Returns what `open`
// does.
template <class Open>
auto drive(const Script& script, Open open) {
    detail::script = &script;
    SetTimer(nullptr, 0, 1, detail::runScript);
    return open();
}

inline std::string textOf(HWND window) {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

inline std::string textOf(HWND dialog, int control) {
    return textOf(GetDlgItem(dialog, control));
}

// Tells the dialog what happened to a control, as the control itself does.
inline void notify(HWND dialog, int control, int code) {
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(control, code), reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
}

inline void redraw(HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

// The pixels of an owner-drawn item of this size.
template <class Draw>
std::vector<COLORREF> pixelsOf(DRAWITEMSTRUCT item, SIZE size, Draw draw) {
    const HDC screen = GetDC(nullptr);
    item.hDC = CreateCompatibleDC(screen);
    item.rcItem = {0, 0, size.cx, size.cy};
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, std::max(size.cx, LONG{1}), size.cy);
    const HGDIOBJ old = SelectObject(item.hDC, bitmap);
    draw(item);
    std::vector<COLORREF> pixels;
    for (int at = 0; at < size.cx * size.cy; ++at)
        pixels.push_back(GetPixel(item.hDC, at % size.cx, at / size.cx));
    SelectObject(item.hDC, old);
    DeleteObject(bitmap);
    DeleteDC(item.hDC);
    ReleaseDC(nullptr, screen);
    return pixels;
}

inline RECT boxIn(HWND dialog, HWND child) {
    RECT box{};
    GetWindowRect(child, &box);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&box), 2);
    return box;
}

inline SIZE neededSize(HWND control, const std::string& text) {
    const HDC dc = GetDC(control);
    const HGDIOBJ old = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageA(control, WM_GETFONT, 0, 0)));
    RECT needed{};
    DrawTextA(dc, text.c_str(), -1, &needed, DT_CALCRECT | DT_SINGLELINE);
    SelectObject(dc, old);
    ReleaseDC(control, dc);
    return {needed.right, needed.bottom};
}

// What a careful reader of a dialog would complain about, a line each: visible controls that leave the dialog, lie on
// each other or cut their text, Tab order that jumps back, letters that two controls share (but for `sharedLetters`).
// `showsText` tells whether an owner-drawn button's text is what it shows.
inline std::vector<std::string> layoutFaults(HWND dialog, const std::string& sharedLetters = {},
                                             const std::function<bool(HWND)>& showsText = nullptr) {
    std::vector<std::string> faults;
    std::map<HWND, RECT> solid; // all but frames
    std::set<int> letters;
    RECT client{};
    GetClientRect(dialog, &client);
    RECT before{};
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const LONG style = GetWindowLongA(child, GWL_STYLE);
        if ((style & WS_VISIBLE) == 0)
            continue;
        const std::string name = classOf(child);
        const std::string text = textOf(child);
        const std::string called = name + " " + std::to_string(GetDlgCtrlID(child)) + " \"" + text + "\"";
        const RECT box = boxIn(dialog, child);
        if (box.left < 0 || box.top < 0 || box.right > client.right || box.bottom > client.bottom)
            faults.push_back("outside: " + called);
        const LONG type = name == "BUTTON" ? style & BS_TYPEMASK : -1;
        if (type != BS_GROUPBOX) {
            RECT shared;
            const HWND buddy = name == "MSCTLS_UPDOWN32" // the system lets it lie on its field's edge
                                   ? reinterpret_cast<HWND>(SendMessageA(child, UDM_GETBUDDY, 0, 0))
                                   : nullptr;
            for (const auto& [other, otherBox] : solid)
                if (other != buddy && IntersectRect(&shared, &box, &otherBox))
                    faults.push_back("lies on \"" + textOf(other) + "\": " + called);
            solid[child] = box;
        }
        if ((style & WS_TABSTOP) != 0) {
            if (box.top < before.bottom && box.left < before.right)
                faults.push_back("Tab jumps back: " + called);
            before = box;
        }
        const bool label = name == "STATIC" && (style & SS_TYPEMASK) == SS_LEFT;
        const bool drawn = type == BS_OWNERDRAW;
        if (!label && (type < 0 || (drawn && showsText && !showsText(child))))
            continue;
        if (const std::size_t at = text.find('&'); at != std::string::npos) {
            const int letter = std::toupper(text[at + 1]);
            if (!letters.insert(letter).second && sharedLetters.find(static_cast<char>(letter)) == std::string::npos)
                faults.push_back("letter used twice: " + called);
        }
        const SIZE needed = neededSize(child, text);
        const bool marked = type == BS_AUTOCHECKBOX || type == BS_AUTORADIOBUTTON;
        const LONG mark = marked ? GetSystemMetrics(SM_CXMENUCHECK) + needed.cy / 4 : 0; // the box and its distance
        if (needed.cx + mark > box.right - box.left || (!text.empty() && needed.cy > box.bottom - box.top))
            faults.push_back("cut: " + called);
    }
    return faults;
}

} // namespace dialog_script
