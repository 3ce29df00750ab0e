// The size of text in dialogs: everything that is laid out grows with it.
#pragma once

namespace veldran {

// Pixels at the current text size for a length given in pixels at 100 %.
int scaled(int pixels);

// The text size in per cent: the system's, unless one was forced (screenshots and tests do; 0 asks the system again).
int textSizePercent();
void forceTextSize(int percent);

} // namespace veldran
