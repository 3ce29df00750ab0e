// Sound scan: the beam of an oscilloscope writes a whole sound from left to right, once.
#include "instruments/windows/instruments.h"

#include "instruments/real_time.h"
#include "instruments/scopes/sound_scan_parameters.h"
#include "instruments/scopes/windows/scope_face.h"
#include "instruments/scopes/windows/scope_sound.h"
#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"
#include "settings/windows/settings_store.h"

#include <algorithm>

namespace veldran::sound_scan {
namespace {

// The beam is far quicker here than where it shows a part of a sound, and the light stronger for it. Chosen by eye.
constexpr float kExposure = 8;
constexpr float kSpotRadius = 2; // output pixels

template <Setting kSetting>
constexpr int kSoundScanControl = kControlOf<kSoundScanParameters, kSoundScanFirstControl, kSetting>;

constexpr ScopeControls kScopeControls = {
    kSoundScanControl<Setting::MainVoiceGreenColor>, kSoundScanControl<Setting::MainVoiceBlackColor>,
    kSoundScanControl<Setting::MainVoiceScaleColor>, kSoundScanControl<Setting::MainVoiceBezelColor>,
    kSoundScanControl<Setting::MainVoicePanelColor>, kSoundScanControl<Setting::MainVoiceGlow>,
    kSoundScanControl<Setting::MainVoicePadsize>,    kSoundScanControl<Setting::MainVoiceBezelSize>,
    kSoundScanControl<Setting::MainVoiceUseBezel>,   kSoundScanControl<Setting::MainVoiceUseScale>,
};

constexpr SoundControls kSoundControls = {kSoundScanControl<Setting::MainVoiceChannels>,
                                          kSoundScanControl<Setting::MainVoiceSound>,
                                          kSoundScanControl<Setting::MainVoiceNormalize>};

struct ScanParameters {
    ScopeParameters screen;
    int step;            // output pixels a frame
    std::uint32_t pause; // in the host's unit
    int oldest;          // weight, 0 to 255, of what was written a screen's width ago
};

ScanParameters readParameters(HWND dialog, const HostParams* host) {
    ScanParameters p{};
    p.screen = readScope(dialog, kScopeControls, readParameter(dialog, kSoundScanControl<Setting::MainVoiceWidth>),
                         readParameter(dialog, kSoundScanControl<Setting::MainVoiceSize>),
                         isChecked(dialog, kControlAntialias) ? 2 : 1);
    p.step = std::max(readParameter(dialog, kSoundScanControl<Setting::MainVoiceStepSize>), 1);
    p.pause =
        static_cast<std::uint32_t>(std::max(readParameter(dialog, kSoundScanControl<Setting::MainVoicePause>), 0)) *
        (secondInHostUnit(delayUnitOf(host)) / 100);
    const bool fades = isChecked(dialog, kSoundScanControl<Setting::MainVoiceFade>);
    const std::uint32_t percent = std::min(pluginSettings().number(Setting::AdvancedVoiceDarkColorFactor), 100u);
    p.oldest = fades ? static_cast<int>(percent) * 255 / 100 : 255;
    return p;
}

int framesToCross(const ScanParameters& p) {
    return std::max((p.screen.width + p.step - 1) / p.step, 1);
}

class SoundScanSequence : public FrameSequence {
public:
    SoundScanSequence(HWND dialog, const ScanParameters& parameters)
        : FrameSequence(dialog), parameters_(parameters), face_(dialog, kScopeControls, parameters.screen),
          sound_(readSoundFrames(dialog, kSoundControls, framesToCross(parameters), SoundMeasure::Levels)),
          samples_(sound_), light_(unit() * parameters.screen.width, unit() * parameters.screen.height) {
        writeWave(light_, samples_.wave(), sound_.channels, 0, samples_.wave().size(),
                  kExposure / static_cast<float>(unit()));
        if (unit() > 1)
            light_.widen();
    }

    int frames() const override { return sound_.frames(); }
    std::uint32_t delay(int index) const override {
        return FrameSequence::delay(index) + (index == frames() - 1 ? parameters_.pause : 0);
    }
    GlobalBlock render(int index) override {
        return index < frames() ? renderUpTo((index + 1) * parameters_.step) : GlobalBlock{};
    }
    GlobalBlock renderMask() override { return face_.renderOutline(); }
    GlobalBlock renderStill() override { return renderUpTo(parameters_.screen.width * 2 / 3); }

private:
    int unit() const { return parameters_.screen.unit; }

    // The trace with the beam at `column` (output pixels); the beam has left the screen when that lies beyond it.
    GlobalBlock renderUpTo(int column) {
        const int head = std::min(unit() * column, light_.width());
        const std::vector<std::uint8_t> weights = weightsBehind(head);
        return face_.render([&](const ScopedCanvas& screen) {
            const int offset = face_.geometry().offset;
            light_.show(screen.pixels(), offset, offset, face_.screen(), face_.trace(), weights);
            if (head < light_.width())
                drawHeads(screen.pixels(), head, offset);
        });
    }

    // Of all columns: 0 before the beam, less and less behind it.
    std::vector<std::uint8_t> weightsBehind(int head) const {
        std::vector<std::uint8_t> weights(static_cast<std::size_t>(light_.width()), 0);
        for (int x = 0; x < head; ++x)
            weights[static_cast<std::size_t>(x)] =
                static_cast<std::uint8_t>(255 - (255 - parameters_.oldest) * (head - 1 - x) / light_.width());
        return weights;
    }

    // Where the wave is when the beam stands there.
    void drawHeads(const ImageView& picture, int head, int offset) const {
        const WaveValues& wave = samples_.wave();
        const std::size_t moment =
            momentOf(wave.size(), static_cast<std::size_t>(head), static_cast<std::size_t>(light_.width()));
        const int displays = soundDisplays(sound_.channels);
        for (int display = 0; display < displays; ++display) {
            const std::vector<float> value = wave.read(display, moment, 1, 2);
            const WaveLane lane = waveLane(light_.height(), display, displays);
            const float y = lane.middle - (value.empty() ? 0 : value.front()) * lane.reach;
            drawBeamSpot(picture, {static_cast<float>(offset + head), static_cast<float>(offset) + y},
                         kSpotRadius * static_cast<float>(unit()), face_.screen(), face_.trace());
        }
    }

    ScanParameters parameters_;
    ScopeFace face_;
    SoundFrames sound_;
    ScopeSound samples_;
    BeamLight light_; // of the whole sound
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams* host) {
    return std::make_unique<SoundScanSequence>(dialog, readParameters(dialog, host));
}

Colour background(HWND dialog, int) {
    return scopeBackground(dialog, kScopeControls);
}

} // namespace veldran::sound_scan
