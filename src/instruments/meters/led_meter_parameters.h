// Meters made of LEDs: both digital VU meters and the audio spectrum have the same panel. Core: knows no windows.
#pragma once

#include "settings/parameter.h"

#include <array>
#include <cstdint>

namespace veldran {

// The settings of an LED meter stand together in the settings table, in this order.
enum class LedMeterSetting : std::uint8_t {
    BlackColor,
    Channels,
    Etched,
    Etchsize,
    Frames,
    GreenColor,
    Incandescent,
    Labels,
    LedDeep,
    LedWide,
    LEDs,
    MatchTime,
    Normalize,
    Padsize,
    RedColor,
    Retro,
    Scale,
    ShowDarkLED,
    Sound,
    YellowColor,
};

// The setting of the meter whose settings begin with `first`.
constexpr Setting ledMeterSetting(Setting first, LedMeterSetting which) {
    return static_cast<Setting>(static_cast<int>(first) + static_cast<int>(which));
}

inline constexpr Setting kVuDigitalVerticalSettings = Setting::MainVUDigVertBlackColor;
inline constexpr Setting kVuDigitalHorizontalSettings = Setting::MainVUDigHorzBlackColor;
inline constexpr Setting kSpectrumSettings = Setting::MainSpectrumBlackColor;

static_assert(ledMeterSetting(kVuDigitalVerticalSettings, LedMeterSetting::LEDs) == Setting::MainVUDigVertLEDs);
static_assert(ledMeterSetting(kVuDigitalVerticalSettings, LedMeterSetting::YellowColor) ==
              Setting::MainVUDigVertYellowColor);
static_assert(ledMeterSetting(kVuDigitalHorizontalSettings, LedMeterSetting::YellowColor) ==
              Setting::MainVUDigHorzYellowColor);
static_assert(ledMeterSetting(kSpectrumSettings, LedMeterSetting::YellowColor) == Setting::MainSpectrumYellowColor);

inline constexpr char kLampStyles[] = "Off;Round lamps;Fluorescent tube";

inline constexpr int kVuDigitalVerticalFirstControl = 100;
inline constexpr int kVuDigitalHorizontalFirstControl = 134;
inline constexpr int kSpectrumFirstControl = 408;

// The rows of a meter whose settings begin with `first`.
constexpr std::array<ParameterRow, 20> ledMeterParameters(Setting first, const char* leds, const char* ledWidth,
                                                          const char* ledDepth) {
    using enum LedMeterSetting;
    const auto setting = [first](LedMeterSetting which) { return ledMeterSetting(first, which); };
    return {{
        {ParameterKind::Colour, "Green:", setting(GreenColor), "", ""},
        {ParameterKind::Colour, "Yellow:", setting(YellowColor), "", ""},
        {ParameterKind::Colour, "Red:", setting(RedColor), "", ""},
        {ParameterKind::Colour, "Panel:", setting(BlackColor), "", ""},
        {ParameterKind::Number, "Frames:", setting(Frames), "2,32760,256", ""},
        {ParameterKind::Number, "LEDs:", setting(LEDs), leds, ""},
        {ParameterKind::Number, "LED width:", setting(LedWide), ledWidth, ""},
        {ParameterKind::Number, "LED depth:", setting(LedDeep), ledDepth, ""},
        {ParameterKind::Number, "Padding:", setting(Padsize), "0,128,4", ""},
        {ParameterKind::Number, "Etch size:", setting(Etchsize), "1,16,2", ""},
        {ParameterKind::Choice, "Channels:", setting(Channels), "", kSoundChannels},
        {ParameterKind::Choice, "Retro:", setting(Retro), "", kLampStyles},
        {ParameterKind::PlayableSound, "Sound:", setting(Sound), "", ""},
        {ParameterKind::Check, "Match time", setting(MatchTime), "", ""},
        {ParameterKind::Check, "Normalize", setting(Normalize), "", ""},
        {ParameterKind::Check, "Scale", setting(Scale), "", ""},
        {ParameterKind::Check, "Labels", setting(Labels), "", ""},
        {ParameterKind::Check, "Etched", setting(Etched), "", ""},
        {ParameterKind::Check, "Show dark LEDs", setting(ShowDarkLED), "", ""},
        {ParameterKind::Check, "Incandescent", setting(Incandescent), "", ""},
    }};
}

inline constexpr auto kVuDigitalVerticalParameters =
    ledMeterParameters(kVuDigitalVerticalSettings, "8,128,44", "1,64,7", "1,64,3");
inline constexpr auto kVuDigitalHorizontalParameters =
    ledMeterParameters(kVuDigitalHorizontalSettings, "8,128,44", "1,64,4", "1,64,9");
inline constexpr auto kSpectrumParameters = ledMeterParameters(kSpectrumSettings, "8,128,48", "1,64,7", "1,64,3");

} // namespace veldran
