// The table of instruments. A panel must use exactly the identities that its row reserves; the compiler checks it.
#include "instruments/effect_list.h"

#include "instruments/radar_parameters.h"

#include <algorithm>
#include <array>

namespace veldran {
namespace {

constexpr std::array<EffectRow, kEffectCount> kEffects = {{
    {"Alien Overflight", "MainPlasma", 385, 407, 5, EffectState::Planned, {}},
    {"Altimeter", "MainAltimeter", 525, 541, 3, EffectState::Planned, {}},
    {"Audio Spectrum", "MainSpectrum", 408, 441, 6, EffectState::Planned, {}},
    {"Analog VU Meter (rectangular)", "MainVUAnalogSquare", 168, 183, 3, EffectState::Planned, {}},
    {"Analog VU Meter (round)", "MainVUAnalogRound", 184, 199, 3, EffectState::Planned, {}},
    {"Bar Graph", "MainBarGraph", 542, 570, 7, EffectState::Planned, {}},
    {"Bubble Chamber", "MainBubble", 351, 374, 8, EffectState::Planned, {}},
    {"Countdown *", "MainCountdown", 200, 220, 6, EffectState::Planned, {}},
    {"Digital VU Meter (horizontal)", "MainVUDigHorz", 134, 167, 6, EffectState::Planned, {}},
    {"Digital VU Meter (vertical)", "MainVUDigVert", 100, 133, 6, EffectState::Planned, {}},
    {"Extraterrestrial Data Pad", "MainDatapad", 504, 524, 3, EffectState::Planned, {}},
    {"Jacob's Ladder *", "MainLadder", 470, 489, 6, EffectState::Planned, {}},
    {"Lissajous Figure", "MainLissajous", 238, 266, 7, EffectState::Planned, {}},
    {"Magic Eye *", "MainMagicEye", 221, 237, 3, EffectState::Planned, {}},
    {"Plasma Arc *", "MainArclight", 442, 469, 6, EffectState::Planned, {}},
    {"Radar", "MainRadar", kRadarFirstControl, 350, 3, EffectState::Ready, kRadarParameters},
    {"Tachometer", "MainTach", 375, 384, 3, EffectState::Planned, {}},
    {"Sound Map", "MainSonic", 267, 296, 6, EffectState::Planned, {}},
    {"Sound Scan", "MainVoice", 297, 328, 7, EffectState::Planned, {}},
    {"Stopwatch *", "MainStopwatch", 490, 503, 3, EffectState::Planned, {}},
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
