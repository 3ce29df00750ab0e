// Ten band-pass filters over both channels of a sound at once, and the peaks of what comes out of them. Core: knows no
// files.
#pragma once

#include "sound/band_lanes.h"
#include "sound/channel_peaks.h"

#include <array>
#include <cstdint>
#include <span>

namespace veldran {

struct Band {
    double centre; // hertz
    double width;  // hertz, between the points 3 dB down
};

// Centres an octave apart. The upper bands are narrow for their place, so that hiss does not fill them.
inline constexpr std::array<Band, 10> kBands = {{{31, 31},
                                                 {62, 49},
                                                 {125, 94},
                                                 {250, 180},
                                                 {500, 375},
                                                 {1000, 750},
                                                 {2000, 750},
                                                 {4000, 750},
                                                 {8000, 1500},
                                                 {16000, 1500}}};

using BandPeaks = std::array<ChannelPeaks, kBands.size()>;

// Second-order filters with gain 1 at their centres, and their states: sound is passed through in as many stretches as
// one likes. What a filter gives is cut to a whole number and kept in 16 bits, where too loud a value wraps round; it
// is the peak of these that counts. A centre above half the sample rate, or no rate at all, is taken as it comes: the
// formula gives something for each of them, and what is not a number counts as 0.
class BandBank {
public:
    explicit BandBank(std::uint32_t samplesPerSecond);

    // Passes `pairs` through and tells the peaks of this stretch: 0 to 32768.
    BandPeaks filter(std::span<const StereoPair> pairs);

    // Pairs that it works on at a time; stretches of as many, or multiples, go through quickest.
    static constexpr std::size_t kBlockPairs = 512;

private:
    void filterBlock(std::span<const StereoPair> pairs, BandPeaks& peaks);

    RunBandLanes run_;
    BandFactors factors_;
    BandState state_{};
};

} // namespace veldran
