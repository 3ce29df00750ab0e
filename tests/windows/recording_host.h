// A host as somebody else would write one: loads the built plugin, works its dialog through window messages and keeps a
// copy of everything that it sends. Knows the plugin by its binary interface and its control identities alone.
#pragma once

#include "abi/plugin_abi.h"
#include "dialog_script.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace recording {

// Controls of the configuration dialog.
enum Control : int {
    kBuild = 1,
    kCancel = 2,
    kTest = 3,
    kTrueColour = 10,
    kPalette = 13,
    kSupercompress = 19,
    kEffect = 30,
    kDelay = 31,
    kAlpha = 49,
    kRadarSize = 340,
    kRadarIncrement = 344,
    kRadarMarkerList = 348,
    kRadarPing = 350,
};

inline constexpr int kRadar = 15; // row of the effect list

// One call of the host's message entry.
struct Message {
    std::uint32_t command;
    std::uintptr_t wParam;
    std::intptr_t lParam;
    std::string text; // commands 3, 8 and 10

    // The number and what goes with it: "10 Building", "13 6 360", "15 e 255", "4 1"; all others the number alone.
    std::string describe() const;
};

// A delivered frame. Coordinates begin at the top left; those outside of the frame throw std::out_of_range.
struct Frame {
    HostImageInfo info;
    std::vector<std::uint8_t> bitmap; // the whole block

    int width() const { return header().biWidth; }
    int height() const { return header().biHeight; }
    int bits() const { return header().biBitCount; }
    COLORREF colour(int x, int y) const; // through the colour table where there is one
    int index(int x, int y) const;       // of an 8-bit frame
    int alpha(int x, int y) const;       // of a 32-bit frame
    COLORREF tableColour(int entry) const;
    BITMAPINFOHEADER header() const;

private:
    const std::uint8_t* pixel(int x, int y) const;
};

// The host answers 0 to the `time`-th message (1 is the first) of this command, and 1 to all others.
struct Refusal {
    std::uint32_t command;
    int time;
};

using Step = std::function<void(HWND dialog)>;

// One invocation of the plugin. The steps are done one after another once the dialog stands; then it is cancelled, if
// it is still open.
struct Session {
    std::optional<std::string> settings; // the configuration file that the plugin finds; none: not even its folder
    std::vector<Step> steps;
    std::uint32_t version = 0x1000;
    std::uint32_t flags = kDelayInHundredths;
    std::vector<Refusal> refusals;
    Step otherDialogs;                                   // done in each message box and editor before its OK is pressed
    std::function<bool(const Message& message)> refuses; // the host answers 0 to those, too
    std::function<HGLOBAL(const std::string& path)> loadImage; // the answer to command 8; none: no file can be loaded
    int invocations = 1;                                       // calls of PLUGIN16DoBuild with the same loaded library
    bool hasMessageEntry = true;
    std::function<void(std::uint32_t command)> whileAnswering; // what the host does before it answers a message
    std::optional<std::intptr_t> answer;                       // to all messages; none: what a good host answers
};

struct Recording {
    int result = -1; // of the last invocation
    int dialogsOpened = 0;
    std::vector<Message> messages;
    std::vector<HostTaskInfo> tasks; // one for each command 1 or 5
    std::vector<Frame> frames;       // of all tasks
    std::vector<std::string> boxes;  // texts of the plugin's message boxes
    std::vector<std::string> faults; // what a careful host would complain about; empty when all is well
    std::string settingsFile;        // as the plugin left it
    std::vector<std::string> folder; // names of what stands in the settings' folder afterwards

    std::vector<std::string> describe() const;
    int count(std::uint32_t command) const;
};

// PLUGIN16DoBuild of the plugin that is loaded.
DoBuildFunction doBuildEntry();

// Loads the plugin, runs the session and unloads it again. The person's own settings are moved aside meanwhile.
Recording run(const Session& session);

// The dialog of the running session; null before it stands and after it has gone.
HWND openDialog();

// For steps: what the running session has recorded so far. The record begins anew.
Recording takeRecording();

// Steps, and what steps are made of. Pressing waits until the plugin has done what the button says.
void press(HWND dialog, int button);
void setCheck(HWND dialog, int control, bool checked);
void setChoice(HWND dialog, int control, int position); // -1: no choice
void setText(HWND dialog, int control, const std::string& text);
void setLines(HWND dialog, int control, const std::vector<std::string>& lines);
Step pressing(int button);
using dialog_script::textOf;

// The row of the effect list whose settings keys begin with `stem`, as in "MainRadar".
int effectOf(const std::string& stem);

// Gives the control of a settings key a value, written as in the settings file, and returns the one before. Throws
// std::out_of_range when the key has no control.
std::string exchangeSetting(HWND dialog, const std::string& key, const std::string& value);

// The parts of a text between separators.
std::vector<std::string> split(const std::string& text, char separator);

} // namespace recording
