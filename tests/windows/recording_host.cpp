// Dialogs are subclassed as they are created and noticed when they have been initialised; steps run from a timer in the
// dialog's own message loop, as a person's input would.
#include "recording_host.h"

#include "instruments/effect_list.h"
#include "settings/output_options.h"
#include "settings/settings_table.h"
#include "settings_folder.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <commctrl.h>

namespace recording {
namespace {

using dialog_script::notify;

struct Invocation {
    const Session* session = nullptr;
    Recording recording;
    HWND dialog = nullptr;
    std::size_t nextStep = 0;
    UINT_PTR timer = 0;
    const HostTaskInfo* task = nullptr; // while a task is open
};

Invocation* current = nullptr;

void complain(const std::string& fault) {
    current->recording.faults.push_back(fault);
}

void CALLBACK runStep(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    Invocation& run = *current;
    if (!IsWindow(run.dialog))
        return; // it closed as soon as it was there
    if (run.nextStep < run.session->steps.size())
        run.session->steps[run.nextStep++](run.dialog);
    else
        press(run.dialog, kCancel);
    run.timer = SetTimer(nullptr, 0, 0, runStep); // killed when the dialog has gone
}

// A message box, or an editor that the dialog has opened.
void readMessageBox(HWND box) {
    if (current->session->otherDialogs)
        current->session->otherDialogs(box);
    std::string text;
    for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (dialog_script::classOf(child) == "STATIC")
            text += textOf(child);
    }
    current->recording.boxes.push_back(text);
    if (IsWindow(current->dialog) && GetWindow(box, GW_OWNER) != current->dialog)
        complain("message box without its owner: " + text);
    for (const int button : {IDOK, IDCANCEL}) // the other one in case that OK is not taken
        PostMessageA(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
}

void dialogIsReady(HWND dialog) {
    if (GetDlgItem(dialog, IDOK) == nullptr)
        return;                                            // what could not be set up and is about to go
    if (GetDlgItem(dialog, kRadarMarkerList) == nullptr) { // no other dialog has identities like the panels'
        readMessageBox(dialog);
        return;
    }
    ++current->recording.dialogsOpened;
    current->dialog = dialog;
    current->timer = SetTimer(nullptr, 0, 0, runStep);
}

LRESULT CALLBACK dialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    LRESULT result = 0;
    try {
        result = DefSubclassProc(window, message, wParam, lParam);
    } catch (...) {
        complain("an exception left the dialog's procedure");
    }
    if (message == WM_INITDIALOG)
        dialogIsReady(window);
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(window, dialogMessage, 0);
    return result;
}

LRESULT CALLBACK windowIsCreated(int code, WPARAM wParam, LPARAM lParam) {
    const auto window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_CREATEWND && dialog_script::classOf(window) == "#32770")
        SetWindowSubclass(window, dialogMessage, 0, 0);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

template <std::size_t kCount>
bool allZero(const std::uint8_t (&bytes)[kCount]) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
}

void recordTask(const HostTaskInfo* task) {
    current->task = task;
    current->recording.tasks.push_back(*task);
    if (task->size != 1080 || task->version != 0x1000 || task->owner != current->dialog || task->reserved0 != 0 ||
        task->reserved1 != 0 || !allZero(task->reserved2))
        complain("task record");
}

void recordFrame(const HostImageInfo& info) {
    if (info.size != 112 || info.version != 0x1000 || info.reserved0 != 0 || !allZero(info.reserved1) ||
        !allZero(info.reserved2))
        complain("image record");
    Frame frame{info, {}};
    const auto* bytes = static_cast<const std::uint8_t*>(GlobalLock(info.image));
    if (bytes == nullptr || GlobalSize(info.image) < sizeof(BITMAPINFOHEADER)) {
        complain("image block");
        return;
    }
    frame.bitmap.assign(bytes, bytes + GlobalSize(info.image));
    GlobalUnlock(info.image);
    const BITMAPINFOHEADER header = frame.header();
    const std::size_t stride = (static_cast<std::size_t>(header.biWidth) * header.biBitCount + 31) / 32 * 4;
    const std::size_t pixels = stride * static_cast<std::size_t>(header.biHeight);
    const std::size_t table = header.biBitCount == 8 ? 1024 : 0;
    if (header.biSize != 40 || header.biPlanes != 1 || header.biCompression != BI_RGB || header.biSizeImage != pixels ||
        frame.bitmap.size() < 40 + table + pixels)
        complain("bitmap header");
    else
        current->recording.frames.push_back(std::move(frame));
}

bool carriesTask(std::uint32_t command) {
    return command == kHostAddImage || command == kHostAddComment || command == kHostFinishTask ||
           command == kHostSetBackground;
}

std::intptr_t PLUGIN16_CALL onMessage(HostTaskInfo* task, std::uint32_t command, std::uintptr_t wParam,
                                      std::intptr_t lParam) {
    Recording& recording = current->recording;
    Message message{command, wParam, lParam, {}};
    if (command == kHostShowStatus || command == kHostAddComment || command == kHostLoadImage)
        message.text = reinterpret_cast<const char*>(lParam);
    recording.messages.push_back(message);
    const HostTaskInfo* expected = carriesTask(command) ? current->task : nullptr;
    if (task != expected || (carriesTask(command) && task == nullptr))
        complain("task argument of command " + std::to_string(command));
    if (command == kHostCreateTask || command == kHostCreateTestTask)
        recordTask(reinterpret_cast<const HostTaskInfo*>(lParam));
    if (command == kHostAddImage)
        recordFrame(*reinterpret_cast<const HostImageInfo*>(lParam));
    if (command == kHostFinishTask)
        current->task = nullptr;
    if (current->session->whileAnswering)
        current->session->whileAnswering(command);
    if (current->session->answer)
        return *current->session->answer;
    const int time = recording.count(command);
    bool refused = std::ranges::any_of(current->session->refusals, [&](const Refusal& refusal) {
        return refusal.command == command && refusal.time == time;
    });
    if (current->session->refuses && current->session->refuses(message))
        refused = true;
    if (command == kHostLoadImage && !refused)
        return current->session->loadImage ? reinterpret_cast<std::intptr_t>(current->session->loadImage(message.text))
                                           : 0;
    return refused ? 0 : 1;
}

std::string exchangeValue(HWND dialog, int control, veldran::ParameterKind kind, const std::string& value) {
    const HWND window = GetDlgItem(dialog, control);
    std::string before;
    switch (kind) {
    case veldran::ParameterKind::Check:
        before = std::to_string(IsDlgButtonChecked(dialog, control));
        setCheck(dialog, control, value != "0");
        return before;
    case veldran::ParameterKind::Choice:
        before = std::to_string(SendMessageA(window, CB_GETCURSEL, 0, 0));
        setChoice(dialog, control, std::stoi(value));
        return before;
    case veldran::ParameterKind::Colour:
    case veldran::ParameterKind::Curve:
        return std::to_string(SetWindowLongPtrA(window, GWLP_USERDATA, static_cast<LONG_PTR>(std::stoul(value))));
    default:
        before = textOf(window);
        setText(dialog, control, value);
        return before;
    }
}

void invoke() {
    HostParams params{};
    params.size = sizeof params;
    params.version = current->session->version;
    params.message = current->session->hasMessageEntry ? onMessage : nullptr;
    params.flags = current->session->flags;
    const HHOOK hook = SetWindowsHookExA(WH_CBT, windowIsCreated, nullptr, GetCurrentThreadId());
    current->nextStep = 0;
    current->recording.result = doBuildEntry()(nullptr, &params);
    KillTimer(nullptr, current->timer);
    UnhookWindowsHookEx(hook);
    if (IsWindow(current->dialog))
        complain("the dialog is still there");
    current->dialog = nullptr;
}

} // namespace

std::string Message::describe() const {
    const std::string number = std::to_string(command) + ' ';
    if (command == kHostShowStatus)
        return number + text;
    if (command == kHostFinishTask)
        return number + std::to_string(wParam);
    if (command == kHostShowProgress)
        return number + std::to_string(wParam) + ' ' + std::to_string(lParam);
    if (command == kHostSetBackground)
        return number + static_cast<char>(wParam) + ' ' + std::to_string(lParam);
    return std::to_string(command);
}

std::vector<std::string> Recording::describe() const {
    std::vector<std::string> all;
    std::ranges::transform(messages, std::back_inserter(all), &Message::describe);
    return all;
}

int Recording::count(std::uint32_t command) const {
    return static_cast<int>(std::ranges::count(messages, command, &Message::command));
}

BITMAPINFOHEADER Frame::header() const {
    BITMAPINFOHEADER header{};
    std::memcpy(&header, bitmap.data(), sizeof header);
    return header;
}

const std::uint8_t* Frame::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width() || y >= height())
        throw std::out_of_range("no such pixel");
    const int stride = (width() * bits() + 31) / 32 * 4;
    const int table = bits() == 8 ? 1024 : 0;
    return &bitmap.at(static_cast<std::size_t>(40 + table + (height() - 1 - y) * stride + x * bits() / 8));
}

COLORREF Frame::colour(int x, int y) const {
    const std::uint8_t* bytes = pixel(x, y);
    return bits() == 8 ? tableColour(*bytes) : RGB(bytes[2], bytes[1], bytes[0]);
}

int Frame::index(int x, int y) const {
    return *pixel(x, y);
}

int Frame::alpha(int x, int y) const {
    return pixel(x, y)[3];
}

COLORREF Frame::tableColour(int entry) const {
    const std::uint8_t* bytes = &bitmap.at(static_cast<std::size_t>(40 + 4 * entry));
    return RGB(bytes[2], bytes[1], bytes[0]);
}

DoBuildFunction doBuildEntry() {
    return reinterpret_cast<DoBuildFunction>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("veldran1_x64.dll"), "PLUGIN16DoBuild")));
}

HWND openDialog() {
    return IsWindow(current->dialog) ? current->dialog : nullptr;
}

Recording run(const Session& session) {
    const SettingsFolder folder(session.settings);
    Invocation invocation;
    invocation.session = &session;
    current = &invocation;
    const HMODULE library = LoadLibraryA("veldran1_x64.dll");
    if (library == nullptr)
        throw std::runtime_error("veldran1_x64.dll cannot be loaded");
    for (int i = 0; i < session.invocations; ++i)
        invoke();
    FreeLibrary(library);
    current = nullptr;
    invocation.recording.settingsFile = folder.read();
    invocation.recording.folder = folder.names();
    return std::move(invocation.recording);
}

Recording takeRecording() {
    return std::exchange(current->recording, {});
}

void press(HWND dialog, int button) {
    notify(dialog, button, BN_CLICKED);
}

void setCheck(HWND dialog, int control, bool checked) {
    CheckDlgButton(dialog, control, checked ? BST_CHECKED : BST_UNCHECKED);
    notify(dialog, control, BN_CLICKED);
}

void setChoice(HWND dialog, int control, int position) {
    SendDlgItemMessageA(dialog, control, CB_SETCURSEL, static_cast<WPARAM>(position), 0);
    notify(dialog, control, CBN_SELCHANGE);
}

void setText(HWND dialog, int control, const std::string& text) {
    SetDlgItemTextA(dialog, control, text.c_str());
}

void setLines(HWND dialog, int control, const std::vector<std::string>& lines) {
    SendDlgItemMessageA(dialog, control, LB_RESETCONTENT, 0, 0);
    for (const std::string& line : lines)
        SendDlgItemMessageA(dialog, control, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
}

Step pressing(int button) {
    return [button](HWND dialog) { press(dialog, button); };
}

int effectOf(const std::string& stem) {
    const auto effects = veldran::effectRows();
    const auto found = std::ranges::find(effects, stem, &veldran::EffectRow::keyStem);
    return static_cast<int>(found - effects.begin());
}

std::string exchangeSetting(HWND dialog, const std::string& key, const std::string& value) {
    using namespace veldran;
    const auto edits = [&key](const ParameterRow& row) {
        return row.setting != Setting::None && key == settingRow(row.setting).key;
    };
    for (const OptionRow& option : kOutputOptions)
        if (edits(option.parameter))
            return exchangeValue(dialog, option.control, option.parameter.kind, value);
    for (const EffectRow& effect : effectRows())
        for (std::size_t i = 0; i < effect.parameters.size(); ++i)
            if (edits(effect.parameters[i]))
                return exchangeValue(dialog, controlOfRow(effect.parameters, effect.firstControl, i),
                                     effect.parameters[i].kind, value);
    throw std::out_of_range("no control has the key " + key);
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::istringstream stream(text);
    std::vector<std::string> parts;
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

} // namespace recording
