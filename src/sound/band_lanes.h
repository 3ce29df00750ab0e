// The inner loop of the ten filters, for registers of two lengths. A filter waits for its own last output, so one alone
// leaves the processor idle for most of the time: five registers run side by side. Multiplications and sums stand in
// the order of the plain formula and are never contracted, so that not a bit differs from filters that are run one
// after the other, whatever the length. Core: knows no files.
//
// One file that includes this is compiled for processors that not everyone has. What it shares with others by name, as
// inline functions of the standard library, could be linked from there; so the loop uses none.
#pragma once

#include <cstddef>

namespace veldran {

inline constexpr std::size_t kBandLanes = 20; // two channels of ten bands, left first

// The factors of y = gain (x - x'') - b1 y' - b2 y'', where each stroke is a sample back.
struct BandFactors {
    alignas(32) double gain[kBandLanes];
    alignas(32) double b1[kBandLanes];
    alignas(32) double b2[kBandLanes];
};

// The two last outputs, and the two last inputs times the gain; the newest first.
struct BandState {
    alignas(32) double y1[kBandLanes];
    alignas(32) double y2[kBandLanes];
    alignas(32) double x1[kBandLanes];
    alignas(32) double x2[kBandLanes];
};

// Runs all filters over `pairs` pairs of samples, -1 to 1 each and the left one first, and raises `loudest`, one number
// a lane, to the size of their outputs. What is not a number leaves it alone. `input` and `loudest` lie on 32 bytes.
using RunBandLanes = void (*)(const BandFactors& factors, BandState& state, const double* input, std::size_t pairs,
                              double* loudest);

void runBandLanesSse2(const BandFactors& factors, BandState& state, const double* input, std::size_t pairs,
                      double* loudest);
// For processors that have AVX.
void runBandLanesAvx(const BandFactors& factors, BandState& state, const double* input, std::size_t pairs,
                     double* loudest);

bool hasAvx();

// The loop over registers of one `Kind`, five at a time; one took three times as long, two 1.6 times.
template <class Kind>
void runBandLanes(const BandFactors& factors, BandState& state, const double* input, std::size_t pairs,
                  double* loudest) {
    using Register = typename Kind::Register;
    constexpr std::size_t kGroup = 5;
    static_assert(kBandLanes % (kGroup * Kind::kLanes) == 0);
    for (std::size_t first = 0; first < kBandLanes; first += kGroup * Kind::kLanes) {
        Register y1[kGroup], y2[kGroup], x1[kGroup], x2[kGroup], peak[kGroup];
        for (std::size_t i = 0; i < kGroup; ++i) {
            const std::size_t lane = first + Kind::kLanes * i;
            y1[i] = Kind::load(state.y1 + lane);
            y2[i] = Kind::load(state.y2 + lane);
            x1[i] = Kind::load(state.x1 + lane);
            x2[i] = Kind::load(state.x2 + lane);
            peak[i] = Kind::load(loudest + lane);
        }
        // The output takes the place of the one before the last, so that nothing has to be moved on.
        const auto step = [&](std::size_t n, Register* newer, Register* older, Register* olderInput) {
            const Register pair = Kind::loadPair(input + 2 * n);
            for (std::size_t i = 0; i < kGroup; ++i) {
                // Factors are read each time; there are not enough registers for them, and where they lie is aligned.
                const std::size_t lane = first + Kind::kLanes * i;
                const Register x = Kind::times(Kind::load(factors.gain + lane), pair);
                const Register fed = Kind::times(Kind::load(factors.b1 + lane), newer[i]);
                const Register fedBefore = Kind::times(Kind::load(factors.b2 + lane), older[i]);
                older[i] = Kind::minus(Kind::minus(Kind::minus(x, olderInput[i]), fed), fedBefore);
                peak[i] = Kind::larger(Kind::size(older[i]), peak[i]);
                olderInput[i] = x;
            }
        };
        std::size_t n = 0;
        for (; n + 2 <= pairs; n += 2) {
            step(n, y1, y2, x2);
            step(n + 1, y2, y1, x1);
        }
        const bool odd = n < pairs;
        if (odd)
            step(n, y1, y2, x2);
        for (std::size_t i = 0; i < kGroup; ++i) {
            const std::size_t lane = first + Kind::kLanes * i;
            Kind::store((odd ? state.y2 : state.y1) + lane, y1[i]);
            Kind::store((odd ? state.y1 : state.y2) + lane, y2[i]);
            Kind::store((odd ? state.x2 : state.x1) + lane, x1[i]);
            Kind::store((odd ? state.x1 : state.x2) + lane, x2[i]);
            Kind::store(loudest + lane, peak[i]);
        }
    }
}

} // namespace veldran
