// A filter waits for its own last output, so one alone leaves the processor idle for most of the time: several run side
// by side, each with both channels in a register. Multiplications and sums stand in the order of the plain formula, so
// that not a bit differs from filters that are run one after the other.
#include "sound/band_bank.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <emmintrin.h>
#include <numbers>
#include <utility>

namespace veldran {
namespace {

constexpr double kFullScale = 32767;
constexpr double kLoudest = 32768; // what no longer fits 16 bits
constexpr std::size_t kBlockPairs = BandBank::kBlockPairs;
constexpr std::size_t kLanes = BandBank::kLanes;
constexpr std::size_t kGroup = 5; // bands side by side; two took 1.6 times as long, one 3 times

using Lanes = std::array<double, kLanes>;

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

// Runs the filters of the lanes from `first` on and raises `loudest` to the size of their outputs.
void runGroup(std::size_t first, const BandBank::Factors& factors, BandBank::State& state, const double* input,
              std::size_t pairs, Lanes& loudest) {
    const __m128d signBit = _mm_set1_pd(-0.0);
    __m128d gain[kGroup], b1[kGroup], b2[kGroup], y1[kGroup], y2[kGroup], x1[kGroup], x2[kGroup], peak[kGroup];
    for (std::size_t i = 0; i < kGroup; ++i) {
        const std::size_t lane = first + 2 * i;
        gain[i] = _mm_load_pd(&factors.gain[lane]);
        b1[i] = _mm_load_pd(&factors.b1[lane]);
        b2[i] = _mm_load_pd(&factors.b2[lane]);
        y1[i] = _mm_load_pd(&state.y1[lane]);
        y2[i] = _mm_load_pd(&state.y2[lane]);
        x1[i] = _mm_load_pd(&state.x1[lane]);
        x2[i] = _mm_load_pd(&state.x2[lane]);
        peak[i] = _mm_load_pd(&loudest[lane]);
    }
    // The output takes the place of the one before the last, so that nothing has to be moved on.
    const auto step = [&](std::size_t n, __m128d* newer, __m128d* older, __m128d* olderInput) {
        const __m128d pair = _mm_load_pd(input + 2 * n);
        for (std::size_t i = 0; i < kGroup; ++i) {
            const __m128d x = _mm_mul_pd(gain[i], pair);
            older[i] = _mm_sub_pd(_mm_sub_pd(_mm_sub_pd(x, olderInput[i]), _mm_mul_pd(b1[i], newer[i])),
                                  _mm_mul_pd(b2[i], older[i]));
            // The second operand stands where one of them is not a number.
            peak[i] = _mm_max_pd(_mm_andnot_pd(signBit, older[i]), peak[i]);
            olderInput[i] = x;
        }
    };
    std::size_t n = 0;
    for (; n + 2 <= pairs; n += 2) {
        step(n, y1, y2, x2);
        step(n + 1, y2, y1, x1);
    }
    if (n < pairs) {
        step(n, y1, y2, x2);
        std::swap(y1, y2);
        std::swap(x1, x2);
    }
    for (std::size_t i = 0; i < kGroup; ++i) {
        const std::size_t lane = first + 2 * i;
        _mm_store_pd(&state.y1[lane], y1[i]);
        _mm_store_pd(&state.y2[lane], y2[i]);
        _mm_store_pd(&state.x1[lane], x1[i]);
        _mm_store_pd(&state.x2[lane], x2[i]);
        _mm_store_pd(&loudest[lane], peak[i]);
    }
}

// The output as a file would keep it. The conversion gives -2^31 for what does not fit, whose lower half is 0.
int storedSize(double output) {
    const int whole = _mm_cvttsd_si32(_mm_set_sd(output * kFullScale));
    return std::abs(static_cast<int>(static_cast<std::int16_t>(whole)));
}

// One lane again from where it stood, looking at each output.
std::int32_t wrappedPeak(std::size_t lane, const BandBank::Factors& factors, const BandBank::State& before,
                         const double* input, std::size_t pairs) {
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

BandBank::BandBank(std::uint32_t samplesPerSecond) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
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
    const State before = state_;
    alignas(32) Lanes loudest{};
    for (std::size_t first = 0; first < kLanes; first += 2 * kGroup)
        runGroup(first, factors_, state_, input.data(), pairs.size(), loudest);
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
