// The analog VU meters, rectangular and round, have the same panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>
#include <cstdint>

namespace veldran {

// The settings of a needle meter stand together in the settings table, in this order.
enum class NeedleMeterSetting : std::uint8_t {
    BlackColor,
    Channels,
    Frames,
    MatchTime,
    Normalize,
    Padding,
    Size,
    Sound,
    UsePadding,
};

// The setting of the meter whose settings begin with `first`.
constexpr Setting needleMeterSetting(Setting first, NeedleMeterSetting which) {
    return static_cast<Setting>(static_cast<int>(first) + static_cast<int>(which));
}

inline constexpr Setting kVuAnalogRectangularSettings = Setting::MainVUAnalogSquareBlackColor;
inline constexpr Setting kVuAnalogRoundSettings = Setting::MainVUAnalogRoundBlackColor;

static_assert(needleMeterSetting(kVuAnalogRectangularSettings, NeedleMeterSetting::UsePadding) ==
              Setting::MainVUAnalogSquareUsePadding);
static_assert(needleMeterSetting(kVuAnalogRoundSettings, NeedleMeterSetting::UsePadding) ==
              Setting::MainVUAnalogRoundUsePadding);

inline constexpr int kVuAnalogRectangularFirstControl = 168;
inline constexpr int kVuAnalogRoundFirstControl = 184;

// The rows of a meter whose settings begin with `first`.
constexpr std::array<ParameterRow, 9> needleMeterParameters(Setting first, const char* size) {
    using enum NeedleMeterSetting;
    const auto setting = [first](NeedleMeterSetting which) { return needleMeterSetting(first, which); };
    return {{
        {ParameterKind::Colour, "Panel:", setting(BlackColor), "", ""},
        {ParameterKind::Number, "Size:", setting(Size), size, ""},
        {ParameterKind::Number, "Frames:", setting(Frames), "2,32760,128", ""},
        {ParameterKind::Number, "Padding:", setting(Padding), "1,128,10", ""},
        {ParameterKind::Choice, "Channels:", setting(Channels), "", kSoundChannels},
        {ParameterKind::PlayableSound, "Sound:", setting(Sound), "", ""},
        {ParameterKind::Check, "Match time", setting(MatchTime), "", ""},
        {ParameterKind::Check, "Normalize", setting(Normalize), "", ""},
        {ParameterKind::Check, "Use padding", setting(UsePadding), "", ""},
    }};
}

inline constexpr auto kVuAnalogRectangularParameters = needleMeterParameters(kVuAnalogRectangularSettings, "48,256,96");
inline constexpr auto kVuAnalogRoundParameters = needleMeterParameters(kVuAnalogRoundSettings, "48,256,97");

} // namespace veldran
