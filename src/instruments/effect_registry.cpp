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
#include <span>
#include <string_view>
#include <vector>

namespace veldran {
namespace {

struct Entries {
    std::string_view name;
    int (*preview)(BuildContext* context);
    int (*build)(BuildContext* context);
    Colour (*background)(HWND dialog, int transparent);
    OpenSequence open;
};

template <OpenSequence kOpen>
constexpr Entries drawable(std::string_view name, Colour (*background)(HWND, int)) {
    return {name, previewEntry<kOpen>, buildEntry<kOpen>, background, kOpen};
}

// The instruments that can be drawn. One that is missing here has null entries, and the build driver refuses it.
constexpr Entries kDrawable[] = {
    drawable<openSpectrum>("Audio Spectrum", spectrumBackground),
    drawable<openHorizontalVuMeter>("Digital VU Meter (horizontal)", horizontalVuMeterBackground),
    drawable<openVerticalVuMeter>("Digital VU Meter (vertical)", verticalVuMeterBackground),
    drawable<openAlienOverflight>("Alien Overflight", alienOverflightBackground),
    drawable<openAltimeter>("Altimeter", altimeterBackground),
    drawable<openBarGraph>("Bar Graph", barGraphBackground),
    drawable<openRectangularVuMeter>("Analog VU Meter (rectangular)", rectangularVuMeterBackground),
    drawable<openRoundVuMeter>("Analog VU Meter (round)", roundVuMeterBackground),
    drawable<openBubbleChamber>("Bubble Chamber", bubbleChamberBackground),
    drawable<openCountdown>("Countdown *", countdownBackground),
    drawable<openDataPad>("Extraterrestrial Data Pad", countdownBackground),
    drawable<openJacobsLadder>("Jacob's Ladder *", jacobsLadderBackground),
    drawable<openLissajous>("Lissajous Figure", lissajousBackground),
    drawable<openMagicEye>("Magic Eye *", magicEyeBackground),
    drawable<openPlasmaArc>("Plasma Arc *", plasmaArcBackground),
    drawable<openRadar>("Radar", radarBackground),
    drawable<openTachometer>("Tachometer", tachometerBackground),
    drawable<openSoundMap>("Sound Map", soundMapBackground),
    drawable<openSoundScan>("Sound Scan", soundScanBackground),
    drawable<openStopwatch>("Stopwatch *", stopwatchBackground),
};

struct Registry {
    std::array<std::vector<int>, kEffectCount> controls;
    std::array<EffectDescriptor, kEffectCount> effects{};

    Registry() {
        for (std::size_t i = 0; i < effects.size(); ++i) {
            const EffectRow& row = effectRows()[i];
            controls[i] = controlList(row);
            effects[i].name = row.name;
            effects[i].controls = controls[i].data();
            const auto* entries = std::ranges::find(kDrawable, std::string_view(row.name), &Entries::name);
            if (entries == std::end(kDrawable))
                continue;
            effects[i].preview = entries->preview;
            effects[i].build = entries->build;
            effects[i].background = entries->background;
            effects[i].open = entries->open;
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
