// The topics of the help document that the program opens it at: the anchors of docs/help/VELDRap1.HTML.
// Core: knows no windows.
#pragma once

#include "instruments/effect_list.h"

#include <array>

namespace veldran {

inline constexpr char kHelpMain[] = "MAIN";
inline constexpr char kHelpAdvanced[] = "ADVANCED";
inline constexpr char kHelpMarkers[] = "MARKERS";
inline constexpr char kHelpTachPoints[] = "TACHPOINTS";
inline constexpr char kHelpAltPoints[] = "ALTPOINTS";
inline constexpr char kHelpSound[] = "SOUND";

inline constexpr std::array<const char*, 6> kGeneralHelpTopics = {kHelpMain,       kHelpAdvanced,  kHelpMarkers,
                                                                  kHelpTachPoints, kHelpAltPoints, kHelpSound};

// In the order of the effect list.
inline constexpr std::array<const char*, kEffectCount> kEffectHelpTopics = {
    "ALIENOVERFLIGHT", "ALTIMETER",    "SPECTRUM",   "VURECTANGULAR", "VUROUND",      "BARGRAPH",  "BUBBLECHAMBER",
    "COUNTDOWN",       "VUHORIZONTAL", "VUVERTICAL", "DATAPAD",       "JACOBSLADDER", "LISSAJOUS", "MAGICEYE",
    "PLASMAARC",       "RADAR",        "TACHOMETER", "SOUNDMAP",      "SOUNDSCAN",    "STOPWATCH"};

// The topic of an effect's panel; the main dialog's when there is no such row.
constexpr const char* helpTopicOf(int row) {
    return row >= 0 && row < kEffectCount ? kEffectHelpTopics[static_cast<std::size_t>(row)] : kHelpMain;
}

} // namespace veldran
