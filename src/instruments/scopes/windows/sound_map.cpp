// Sound map: an oscilloscope whose beam writes, in each frame, the wave of one part of a sound.
#include "instruments/windows/instruments.h"

#include "instruments/scopes/sound_map_parameters.h"
#include "instruments/scopes/windows/scope_face.h"
#include "instruments/scopes/windows/scope_sound.h"
#include "settings/output_options.h"
#include "settings/windows/parameter_reader.h"

namespace veldran::sound_map {
namespace {

constexpr float kExposure = 1;

template <Setting kSetting>
constexpr int kSoundMapControl = kControlOf<kSoundMapParameters, kSoundMapFirstControl, kSetting>;

constexpr ScopeControls kScopeControls = {
    kSoundMapControl<Setting::MainSonicGreenColor>, kSoundMapControl<Setting::MainSonicBlackColor>,
    kSoundMapControl<Setting::MainSonicScaleColor>, kSoundMapControl<Setting::MainSonicBezelColor>,
    kSoundMapControl<Setting::MainSonicPanelColor>, kSoundMapControl<Setting::MainSonicGlow>,
    kSoundMapControl<Setting::MainSonicPadsize>,    kSoundMapControl<Setting::MainSonicBezelSize>,
    kSoundMapControl<Setting::MainSonicUseBezel>,   kSoundMapControl<Setting::MainSonicUseScale>,
};

constexpr SoundControls kSoundControls = {kSoundMapControl<Setting::MainSonicChannels>,
                                          kSoundMapControl<Setting::MainSonicSound>,
                                          kSoundMapControl<Setting::MainSonicNormalize>};

ScopeParameters readScreen(HWND dialog) {
    return readScope(dialog, kScopeControls, readParameter(dialog, kSoundMapControl<Setting::MainSonicWidth>),
                     readParameter(dialog, kSoundMapControl<Setting::MainSonicSize>),
                     isChecked(dialog, kControlAntialias) ? 2 : 1);
}

class SoundMapSequence : public FrameSequence {
public:
    SoundMapSequence(HWND dialog, const HostParams* host, const ScopeParameters& screen)
        : FrameSequence(dialog), unit_(screen.unit), face_(dialog, kScopeControls, screen),
          sound_(readSoundFrames(dialog, kSoundControls,
                                 readParameter(dialog, kSoundMapControl<Setting::MainSonicFrames>),
                                 SoundMeasure::Levels)),
          samples_(sound_), light_(unit_ * screen.width, unit_ * screen.height),
          columns_(static_cast<std::size_t>(light_.width()), 255) {
        if (sound_.frames() > 0 && isChecked(dialog, kSoundMapControl<Setting::MainSonicMatchTime>))
            matchedDelay_ = sound_.matchedDelay(host);
    }

    int frames() const override { return sound_.frames(); }
    std::uint32_t delay(int index) const override { return matchedDelay_.value_or(FrameSequence::delay(index)); }
    GlobalBlock render(int index) override {
        return index < frames() ? renderPart(static_cast<std::size_t>(index), static_cast<std::size_t>(frames()))
                                : GlobalBlock{};
    }
    GlobalBlock renderMask() override { return face_.renderOutline(); }
    GlobalBlock renderStill() override { return frames() > 0 ? render(loudestFrame()) : renderPart(0, 1); }

private:
    // The wave of one of so many parts of the sound.
    GlobalBlock renderPart(std::size_t part, std::size_t parts) {
        const std::size_t moments = samples_.wave().size();
        const std::size_t first = momentOf(moments, part, parts);
        light_.clear();
        writeWave(light_, samples_.wave(), sound_.channels, first, momentOf(moments, part + 1, parts) - first,
                  kExposure / static_cast<float>(unit_));
        if (unit_ > 1)
            light_.widen();
        return face_.render([&](const ScopedCanvas& screen) {
            const int offset = face_.geometry().offset;
            light_.show(screen.pixels(), offset, offset, face_.screen(), face_.trace(), columns_);
        });
    }

    int loudestFrame() const {
        int loudest = 0;
        for (int i = 1; i < frames(); ++i)
            if (sound_.level(0, i) > sound_.level(0, loudest))
                loudest = i;
        return loudest;
    }

    int unit_;
    ScopeFace face_;
    SoundFrames sound_;
    ScopeSound samples_;
    BeamLight light_;
    std::vector<std::uint8_t> columns_; // all of them are shown
    std::optional<std::uint32_t> matchedDelay_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams* host) {
    return std::make_unique<SoundMapSequence>(dialog, host, readScreen(dialog));
}

Colour background(HWND dialog, int) {
    return scopeBackground(dialog, kScopeControls);
}

} // namespace veldran::sound_map
