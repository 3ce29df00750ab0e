// A peak follows from the lowest and the highest sample, and these are found 16 bytes at a time: a register holds whole
// pairs, so its even and odd lanes are the channels.
#include "sound/channel_peaks.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <emmintrin.h>

namespace veldran {
namespace {

// What differs between samples of 8 and of 16 bits.
struct Bytes {
    using Sample = std::uint8_t;
    static constexpr Sample kSilence = kByteMidpoint;
    static __m128i fill() { return _mm_set1_epi8(kByteMidpoint); }
    static __m128i lower(__m128i a, __m128i b) { return _mm_min_epu8(a, b); }
    static __m128i higher(__m128i a, __m128i b) { return _mm_max_epu8(a, b); }
    static std::int32_t peak(int deviation) { return deviation * 2; }
};

struct Words {
    using Sample = std::int16_t;
    static constexpr Sample kSilence = 0;
    static __m128i fill() { return _mm_setzero_si128(); }
    static __m128i lower(__m128i a, __m128i b) { return _mm_min_epi16(a, b); }
    static __m128i higher(__m128i a, __m128i b) { return _mm_max_epi16(a, b); }
    static std::int32_t peak(int deviation) { return deviation / 256; }
};

template <class Kind>
class Extremes {
    using Sample = typename Kind::Sample;
    static constexpr std::size_t kLanes = sizeof(__m128i) / sizeof(Sample);

public:
    explicit Extremes(std::span<const std::uint8_t> bytes) {
        std::size_t at = 0;
        for (; at + sizeof(__m128i) <= bytes.size(); at += sizeof(__m128i))
            take(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + at)));
        std::array<Sample, kLanes> rest;
        rest.fill(Kind::kSilence);
        if (at < bytes.size())
            std::memcpy(rest.data(), bytes.data() + at, (bytes.size() - at) / sizeof(Sample) * sizeof(Sample));
        take(_mm_loadu_si128(reinterpret_cast<const __m128i*>(rest.data())));
    }

    // Of the lanes `first`, `first` + `step` and so on.
    std::int32_t peak(std::size_t first, std::size_t step) const {
        std::array<Sample, kLanes> low;
        std::array<Sample, kLanes> high;
        std::memcpy(low.data(), &low_, sizeof low_);
        std::memcpy(high.data(), &high_, sizeof high_);
        int deviation = 0;
        for (std::size_t lane = first; lane < kLanes; lane += step)
            deviation = std::max({deviation, high[lane] - Kind::kSilence, Kind::kSilence - low[lane]});
        return Kind::peak(deviation);
    }

private:
    void take(__m128i samples) {
        low_ = Kind::lower(low_, samples);
        high_ = Kind::higher(high_, samples);
    }

    __m128i low_ = Kind::fill();
    __m128i high_ = Kind::fill();
};

template <class Kind>
ChannelPeaks measure(bool stereo, std::span<const std::uint8_t> bytes) {
    const Extremes<Kind> extremes(bytes);
    if (stereo)
        return {extremes.peak(0, 2), extremes.peak(1, 2)};
    const std::int32_t peak = extremes.peak(0, 1);
    return {peak, peak};
}

} // namespace

void ChannelPeaks::raise(const ChannelPeaks& other) {
    left = std::max(left, other.left);
    right = std::max(right, other.right);
}

ChannelPeaks channelPeaks(SampleLayout layout, std::span<const std::uint8_t> bytes) {
    return has16Bits(layout) ? measure<Words>(isStereo(layout), bytes) : measure<Bytes>(isStereo(layout), bytes);
}

} // namespace veldran
