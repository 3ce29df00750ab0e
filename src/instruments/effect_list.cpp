// The table of instruments. A panel must use exactly the identities that its row reserves; the compiler checks it.
#include "instruments/effect_list.h"

#include "instruments/dials/altimeter_parameters.h"
#include "instruments/dials/stopwatch_parameters.h"
#include "instruments/dials/tachometer_parameters.h"
#include "instruments/displays/bar_graph_parameters.h"
#include "instruments/displays/countdown_parameters.h"
#include "instruments/displays/data_pad_parameters.h"
#include "instruments/meters/led_meter_parameters.h"
#include "instruments/meters/magic_eye_parameters.h"
#include "instruments/meters/needle_meter_parameters.h"
#include "instruments/scenes/alien_overflight_parameters.h"
#include "instruments/scenes/bubble_chamber_parameters.h"
#include "instruments/scenes/jacobs_ladder_parameters.h"
#include "instruments/scenes/plasma_arc_parameters.h"
#include "instruments/scopes/lissajous_parameters.h"
#include "instruments/scopes/radar_parameters.h"
#include "instruments/scopes/sound_map_parameters.h"
#include "instruments/scopes/sound_scan_parameters.h"

#include <algorithm>
#include <array>

namespace veldran {
namespace {

constexpr std::array<EffectRow, kEffectCount> kEffects = {{
    {"Alien Overflight", "MainPlasma", kAlienOverflightFirstControl, 407, 5, kAlienOverflightParameters},
    {"Altimeter", "MainAltimeter", kAltimeterFirstControl, 541, 3, kAltimeterParameters},
    {"Audio Spectrum", "MainSpectrum", kSpectrumFirstControl, 441, 6, kSpectrumParameters},
    {"Analog VU Meter (rectangular)", "MainVUAnalogSquare", kVuAnalogRectangularFirstControl, 183, 3,
     kVuAnalogRectangularParameters},
    {"Analog VU Meter (round)", "MainVUAnalogRound", kVuAnalogRoundFirstControl, 199, 3, kVuAnalogRoundParameters},
    {"Bar Graph", "MainBarGraph", kBarGraphFirstControl, 570, 7, kBarGraphParameters},
    {"Bubble Chamber", "MainBubble", kBubbleChamberFirstControl, 374, 8, kBubbleChamberParameters},
    {"Countdown *", "MainCountdown", kCountdownFirstControl, 220, 6, kCountdownParameters},
    {"Digital VU Meter (horizontal)", "MainVUDigHorz", kVuDigitalHorizontalFirstControl, 167, 6,
     kVuDigitalHorizontalParameters},
    {"Digital VU Meter (vertical)", "MainVUDigVert", kVuDigitalVerticalFirstControl, 133, 6,
     kVuDigitalVerticalParameters},
    {"Extraterrestrial Data Pad", "MainDatapad", kDataPadFirstControl, 524, 3, kDataPadParameters},
    {"Jacob's Ladder *", "MainLadder", kJacobsLadderFirstControl, 489, 6, kJacobsLadderParameters},
    {"Lissajous Figure", "MainLissajous", kLissajousFirstControl, 266, 7, kLissajousParameters},
    {"Magic Eye *", "MainMagicEye", kMagicEyeFirstControl, 237, 3, kMagicEyeParameters},
    {"Plasma Arc *", "MainArclight", kPlasmaArcFirstControl, 469, 6, kPlasmaArcParameters},
    {"Radar", "MainRadar", kRadarFirstControl, 350, 3, kRadarParameters},
    {"Tachometer", "MainTach", kTachometerFirstControl, 384, 3, kTachometerParameters},
    {"Sound Map", "MainSonic", kSoundMapFirstControl, 296, 6, kSoundMapParameters},
    {"Sound Scan", "MainVoice", kSoundScanFirstControl, 328, 7, kSoundScanParameters},
    {"Stopwatch *", "MainStopwatch", kStopwatchFirstControl, 503, 3, kStopwatchParameters},
}};

constexpr bool panelFits(const EffectRow& row) {
    return row.parameters.empty() || (row.firstControl + identitiesOf(row.parameters) - 1 == row.lastControl &&
                                      spinnersOf(row.parameters) == row.spinnerCount);
}
static_assert(std::ranges::all_of(kEffects, panelFits));

} // namespace

std::span<const EffectRow, kEffectCount> effectRows() {
    return kEffects;
}

std::vector<int> controlList(const EffectRow& row) {
    std::vector<int> controls;
    int identity = row.firstControl;
    for (const ParameterRow& parameter : row.parameters) {
        for (int i = 0; i < identitiesOf(parameter); ++i)
            controls.push_back(identity++);
        if (parameter.kind == ParameterKind::Number)
            controls.push_back(identity - 1 + kSpinnerOffset);
    }
    controls.push_back(0);
    return controls;
}

} // namespace veldran
