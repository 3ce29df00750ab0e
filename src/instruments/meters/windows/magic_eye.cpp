// Magic eye: tuning indicator tubes whose shadows follow the levels of a sound, one tube a channel. Drawn at twice the
// output's size and halved where that is wanted; the tube itself is eye_tube's.
#include "instruments/windows/instruments.h"

#include "instruments/meters/eye_tube.h"
#include "instruments/meters/magic_eye_parameters.h"
#include "instruments/windows/painted_scene.h"
#include "instruments/windows/sound_frames.h"
#include "render/windows/shape_mask.h"
#include "settings/windows/parameter_reader.h"

#include <algorithm>

namespace veldran::magic_eye {
namespace {

constexpr int kSmallest = 16; // output pixels, for hosts that write ranges of their own

template <Setting kSetting>
constexpr int kEyeControl = kControlOf<kMagicEyeParameters, kMagicEyeFirstControl, kSetting>;

constexpr SoundControls kSoundControls = {kEyeControl<Setting::MainMagicEyeChannels>,
                                          kEyeControl<Setting::MainMagicEyeSound>,
                                          kEyeControl<Setting::MainMagicEyeNormalize>};

class MagicEyeSequence : public FrameSequence {
public:
    MagicEyeSequence(HWND dialog, const HostParams* host)
        : FrameSequence(dialog), background_(background(dialog, 0)),
          sound_(readSoundFrames(dialog, kSoundControls,
                                 readParameter(dialog, kEyeControl<Setting::MainMagicEyeFrames>),
                                 SoundMeasure::Levels)),
          edges_(readEdges(dialog)), unit_(edges_ == Edges::Smooth ? 2 : 1),
          diameter_(unit_ * std::max(readParameter(dialog, kEyeControl<Setting::MainMagicEyeSize>), kSmallest)),
          tube_(diameter_, {readColour(dialog, kEyeControl<Setting::MainMagicEyeGreenColor>), background_, edges_}) {
        const int padding = unit_ * std::max(readParameter(dialog, kEyeControl<Setting::MainMagicEyePadding>), 0);
        margin_ = isChecked(dialog, kEyeControl<Setting::MainMagicEyeUsePadding>) ? padding : 0;
        step_ = diameter_ + padding;
        if (sound_.frames() > 0 && isChecked(dialog, kEyeControl<Setting::MainMagicEyeMatchTime>))
            matchedDelay_ = sound_.matchedDelay(host);
        lit_ = paintedImage(width(), height(), background_, [this](const ImageView& picture) {
            for (int display = 0; display < displays(); ++display)
                tube_.drawLit(picture, originOf(display));
        });
    }

    int frames() const override { return sound_.frames(); }
    std::uint32_t delay(int index) const override { return matchedDelay_.value_or(FrameSequence::delay(index)); }
    GlobalBlock render(int index) override {
        return renderLevels([&](int display) { return sound_.level(display, index); });
    }
    GlobalBlock renderStill() override {
        return renderLevels([](int display) { return kEyeStill[display]; });
    }
    GlobalBlock renderMask() override {
        return reduced(paintedImage(width(), height(), 0, [this](const ImageView& mask) {
            for (int display = 0; display < displays(); ++display)
                tube_.drawOutline(mask, originOf(display));
        }));
    }

private:
    int displays() const { return soundDisplays(sound_.channels); }
    int width() const { return 2 * margin_ + diameter_ + (displays() - 1) * step_; }
    int height() const { return 2 * margin_ + diameter_; }
    CanvasPoint originOf(int display) const { return {margin_ + display * step_, margin_}; }

    GlobalBlock reduced(GlobalBlock picture) const { return reducedOrUnchanged(std::move(picture), 100 / unit_); }

    template <class LevelOf>
    GlobalBlock renderLevels(LevelOf levelOf) const {
        GlobalBlock picture = drawnCopy(lit_, [&](const ImageView& pixels) {
            for (int display = 0; display < displays(); ++display)
                tube_.drawShadow(pixels, originOf(display), levelOf(display));
        });
        return picture ? reduced(std::move(picture)) : GlobalBlock{};
    }

    Colour background_;
    SoundFrames sound_;
    Edges edges_;
    int unit_; // canvas pixels to an output pixel; what follows is measured in the former
    int diameter_;
    EyeTube tube_;
    int margin_ = 0;
    int step_ = 0;    // from one tube to the next
    GlobalBlock lit_; // all tubes, lit all around
    std::optional<std::uint32_t> matchedDelay_;
};

} // namespace

std::unique_ptr<FrameSequence> open(HWND dialog, HostParams* host) {
    return std::make_unique<MagicEyeSequence>(dialog, host);
}

Colour background(HWND dialog, int) {
    return backgroundOr(dialog, readColour(dialog, kEyeControl<Setting::MainMagicEyeBlackColor>));
}

} // namespace veldran::magic_eye
