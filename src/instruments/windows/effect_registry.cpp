// Joins the instruments' names and panels with the entries that draw them.
#include "instruments/windows/effect_registry.h"

#include "instruments/effect_list.h"
#include "instruments/windows/instruments.h"
#include "settings/windows/parameter_reader.h"

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
    drawable<alien_overflight::open>(alien_overflight::background),
    drawable<altimeter::open>(altimeter::background),
    drawable<led_meter::openSpectrum>(led_meter::spectrumBackground),
    drawable<needle_meter::openRectangular>(needle_meter::rectangularBackground),
    drawable<needle_meter::openRound>(needle_meter::roundBackground),
    drawable<bar_graph::open>(bar_graph::background),
    drawable<bubble_chamber::open>(bubble_chamber::background),
    drawable<countdown::open>(countdown::background),
    drawable<led_meter::openHorizontal>(led_meter::horizontalBackground),
    drawable<led_meter::openVertical>(led_meter::verticalBackground),
    drawable<data_pad::open>(countdown::background),
    drawable<jacobs_ladder::open>(jacobs_ladder::background),
    drawable<lissajous::open>(lissajous::background),
    drawable<magic_eye::open>(magic_eye::background),
    drawable<plasma_arc::open>(plasma_arc::background),
    drawable<radar::open>(radar::background),
    drawable<tachometer::open>(tachometer::background),
    drawable<sound_map::open>(sound_map::background),
    drawable<sound_scan::open>(sound_scan::background),
    drawable<stopwatch::open>(stopwatch::background),
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
