// The entries of all instruments, each in a namespace of its own: `open` prepares the animation that the dialog's
// controls describe, `background` is the colour of its empty area (see EffectDescriptor). Two namespaces hold several
// instruments.
#pragma once

#include "instruments/windows/frame_loop.h"

#include <type_traits>

namespace veldran {

using Open = std::remove_pointer_t<OpenSequence>;
using Background = Colour(HWND dialog, int transparent);

namespace alien_overflight {
Open open;
Background background;
} // namespace alien_overflight
namespace altimeter {
Open open;
Background background;
} // namespace altimeter
namespace bar_graph {
Open open;
Background background;
} // namespace bar_graph
namespace bubble_chamber {
Open open;
Background background;
} // namespace bubble_chamber
namespace countdown {
Open open;
Background background;
} // namespace countdown
namespace data_pad {
Open open;
} // namespace data_pad
namespace jacobs_ladder {
Open open;
Background background;
} // namespace jacobs_ladder
namespace led_meter {
Open openVertical, openHorizontal, openSpectrum;
Background verticalBackground, horizontalBackground, spectrumBackground;
} // namespace led_meter
namespace lissajous {
Open open;
Background background;
} // namespace lissajous
namespace magic_eye {
Open open;
Background background;
} // namespace magic_eye
namespace needle_meter {
Open openRectangular, openRound;
Background rectangularBackground, roundBackground;
} // namespace needle_meter
namespace plasma_arc {
Open open;
Background background;
} // namespace plasma_arc
namespace radar {
Open open;
Background background;
} // namespace radar
namespace sound_map {
Open open;
Background background;
} // namespace sound_map
namespace sound_scan {
Open open;
Background background;
} // namespace sound_scan
namespace stopwatch {
Open open;
Background background;
} // namespace stopwatch
namespace tachometer {
Open open;
Background background;
} // namespace tachometer

} // namespace veldran
