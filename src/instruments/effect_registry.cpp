// Joins the instruments' names and panels with the entries that draw them.
#include "instruments/effect_registry.h"

#include "instruments/alien_overflight.h"
#include "instruments/altimeter.h"
#include "instruments/bar_graph.h"
#include "instruments/bubble_chamber.h"
#include "instruments/countdown.h"
#include "instruments/data_pad.h"
#include "instruments/effect_list.h"
#include "instruments/frame_loop.h"
#include "instruments/jacobs_ladder.h"
#include "instruments/led_meter.h"
#include "instruments/lissajous.h"
#include "instruments/magic_eye.h"
#include "instruments/needle_meter.h"
#include "instruments/plasma_arc.h"
#include "instruments/radar.h"
#include "instruments/sound_map.h"
#include "instruments/sound_scan.h"
#include "instruments/stopwatch.h"
#include "instruments/tachometer.h"
#include "settings/parameter_reader.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace veldran {
namespace {

struct Entries {
    int (*preview)(BuildContext* context);
    int (*build)(BuildContext* context);
    Colour (*background)(HWND dialog, int transparent);
    OpenSequence open;
};

template <OpenSequence kOpen>
constexpr Entries drawable(Colour (*background)(HWND, int)) {
    return {previewEntry<kOpen>, buildEntry<kOpen>, background, kOpen};
}

// In the order of the effect list.
constexpr Entries kDrawable[] = {
    drawable<openAlienOverflight>(alienOverflightBackground),
    drawable<openAltimeter>(altimeterBackground),
    drawable<openSpectrum>(spectrumBackground),
    drawable<openRectangularVuMeter>(rectangularVuMeterBackground),
    drawable<openRoundVuMeter>(roundVuMeterBackground),
    drawable<openBarGraph>(barGraphBackground),
    drawable<openBubbleChamber>(bubbleChamberBackground),
    drawable<openCountdown>(countdownBackground),
    drawable<openHorizontalVuMeter>(horizontalVuMeterBackground),
    drawable<openVerticalVuMeter>(verticalVuMeterBackground),
    drawable<openDataPad>(countdownBackground),
    drawable<openJacobsLadder>(jacobsLadderBackground),
    drawable<openLissajous>(lissajousBackground),
    drawable<openMagicEye>(magicEyeBackground),
    drawable<openPlasmaArc>(plasmaArcBackground),
    drawable<openRadar>(radarBackground),
    drawable<openTachometer>(tachometerBackground),
    drawable<openSoundMap>(soundMapBackground),
    drawable<openSoundScan>(soundScanBackground),
    drawable<openStopwatch>(stopwatchBackground),
};
static_assert(std::size(kDrawable) == kEffectCount);

struct Registry {
    std::array<std::vector<int>, kEffectCount> controls;
    std::array<EffectDescriptor, kEffectCount> effects{};

    Registry() {
        for (std::size_t i = 0; i < effects.size(); ++i) {
            const EffectRow& row = effectRows()[i];
            controls[i] = controlList(row);
            effects[i].name = row.name;
            effects[i].controls = controls[i].data();
            effects[i].preview = kDrawable[i].preview;
            effects[i].build = kDrawable[i].build;
            effects[i].background = kDrawable[i].background;
            effects[i].open = kDrawable[i].open;
        }
    }
};

const Registry& registry() {
    static const Registry instance;
    return instance;
}

} // namespace

const std::array<EffectDescriptor, 20>& EffectRegistry() {
    return registry().effects;
}

const EffectDescriptor& effectDescriptor(int row) {
    return EffectRegistry()[static_cast<std::size_t>(std::clamp(row, 0, kEffectCount - 1))];
}

void showInstrumentControls(HWND dialog, int row) {
    if (row < 0 || row >= kEffectCount)
        showControls(dialog, {});
    else
        showControls(dialog, registry().controls[static_cast<std::size_t>(row)]);
}

} // namespace veldran
