// The filters run over a block at a time; their loop is band_lanes'. What is too loud for 16 bits is gone through
// again.
#include "sound/band_bank.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <emmintrin.h>
#include <numbers>

namespace veldran {
namespace {

constexpr double kFullScale = 32767;
constexpr double kLoudest = 32768; // what no longer fits 16 bits
constexpr std::size_t kBlockPairs = BandBank::kBlockPairs;
static_assert(kBandLanes == 2 * kBands.size());

// Both channels as doubles of -1 to 1, the left one first.
using Block = std::array<double, 2 * kBlockPairs>;

// A sound that has ended leaves numbers in the filters that shrink for ever, and the processor is slow with those near
// the smallest of all: a click and a minute of silence took up to four times as long as a minute of noise. While the
// object lives they are nought; they are far below what any sample could show.
class NoTinyNumbers {
public:
    NoTinyNumbers() { _mm_setcsr(control_ | kFlushToZero | kDenormalsAreZero); }
    NoTinyNumbers(const NoTinyNumbers&) = delete;
    NoTinyNumbers& operator=(const NoTinyNumbers&) = delete;
    ~NoTinyNumbers() { _mm_setcsr(control_); }

private:
    static constexpr unsigned kFlushToZero = 0x8000;
    static constexpr unsigned kDenormalsAreZero = 0x0040;
    unsigned control_ = _mm_getcsr();
};

// The output as a file would keep it. The conversion gives -2^31 for what does not fit, whose lower half is 0.
int storedSize(double output) {
    const int whole = _mm_cvttsd_si32(_mm_set_sd(output * kFullScale));
    return std::abs(static_cast<int>(static_cast<std::int16_t>(whole)));
}

// One lane again from where it stood, looking at each output.
std::int32_t wrappedPeak(std::size_t lane, const BandFactors& factors, const BandState& before, const double* input,
                         std::size_t pairs) {
    double y1 = before.y1[lane], y2 = before.y2[lane], x1 = before.x1[lane], x2 = before.x2[lane];
    int peak = 0;
    for (std::size_t n = 0; n < pairs; ++n) {
        const double x = factors.gain[lane] * input[2 * n + lane % 2];
        const double y = x - x2 - factors.b1[lane] * y1 - factors.b2[lane] * y2;
        peak = std::max(peak, storedSize(y));
        x2 = x1;
        x1 = x;
        y2 = y1;
        y1 = y;
    }
    return peak;
}

// Whether no output of a lane was too loud. Cutting and scaling keep the order of sizes, so the loudest tells. What is
// not a number has left it alone, and counts as 0.
bool fits(double loudest) {
    return loudest * kFullScale < kLoudest;
}

} // namespace

BandBank::BandBank(std::uint32_t samplesPerSecond) : run_(hasAvx() ? runBandLanesAvx : runBandLanesSse2) {
    for (std::size_t lane = 0; lane < kBandLanes; ++lane) {
        const Band& band = kBands[lane / 2];
        const double c = 1 / std::tan(std::numbers::pi * band.width / samplesPerSecond);
        const double d = 2 * std::cos(2 * std::numbers::pi * band.centre / samplesPerSecond);
        factors_.gain[lane] = 1 / (1 + c);
        factors_.b1[lane] = -c * d * factors_.gain[lane];
        factors_.b2[lane] = (c - 1) * factors_.gain[lane];
    }
}

void BandBank::filterBlock(std::span<const StereoPair> pairs, BandPeaks& peaks) {
    alignas(32) Block input;
    for (std::size_t n = 0; n < pairs.size(); ++n) {
        input[2 * n] = pairs[n].left * (1 / kFullScale);
        input[2 * n + 1] = pairs[n].right * (1 / kFullScale);
    }
    const BandState before = state_;
    alignas(32) double loudest[kBandLanes] = {};
    run_(factors_, state_, input.data(), pairs.size(), loudest);
    const auto peak = [&](std::size_t lane) {
        return fits(loudest[lane]) ? storedSize(loudest[lane])
                                   : wrappedPeak(lane, factors_, before, input.data(), pairs.size());
    };
    for (std::size_t band = 0; band < kBands.size(); ++band)
        peaks[band].raise({peak(2 * band), peak(2 * band + 1)});
}

BandPeaks BandBank::filter(std::span<const StereoPair> pairs) {
    const NoTinyNumbers guard;
    BandPeaks peaks{};
    for (; !pairs.empty(); pairs = pairs.subspan(std::min(kBlockPairs, pairs.size())))
        filterBlock(pairs.first(std::min(kBlockPairs, pairs.size())), peaks);
    return peaks;
}

} // namespace veldran
