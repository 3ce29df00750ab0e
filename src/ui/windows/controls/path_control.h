// Controls that hold the path of a file: their look, the choosers that they open, and what can be done with a sound.
// The control is an owner-drawn button whose window text is the full path, of at most kTextLimit bytes.
#pragma once

#include <cstdint>

#include <windows.h>

namespace veldran {

enum class PathKind : std::uint8_t { Sound, Text, Image };

// Draws the control as a field with the file's name and a small button with three dots: focus, pressed and disabled
// states.
void drawPathControl(const DRAWITEMSTRUCT& item);

// Lets the person choose a file for the control; true when its text changed.
bool choosePath(HWND dialog, int controlId, PathKind kind);

// Tells channels, sample rate and playing time of the sound that the control names.
void showSoundInformation(HWND dialog, int controlId);

// One sound plays at a time. Plays the one that the path control names, or stops it when it was this play button that
// started what plays. The button reads "Stop" meanwhile. What goes wrong is told in a message.
void toggleSound(HWND dialog, int pathControlId, int playButtonId);

// Silences what plays. To be called before a build, when another instrument is shown and when the dialog closes.
void stopSounds();

// To be called on MM_WOM_DONE with its `wParam`: gives back device and memory when the sound is at its end. False when
// the message tells of a sound that was stopped already.
bool onSoundDone(HWND dialog, WPARAM device);

} // namespace veldran
